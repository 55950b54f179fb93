// QHash and QVariantMap, beside MapsBench.cpp.

#include <QHash>
#include <QMap>
#include <QString>
#include <QVariant>

#include "bench/Bench.h"
#include "bench/Maps.h"
#include "bench/qt/QtMap.h"

namespace bench {

namespace {

void addAll() {
  addMap<QtMap<QHash<int, QVariant>>>("QHash", Integers);
  addMap<QtMap<QHash<QString, QVariant>>>("QHash", TextKeys);
  addMap<QtMap<QVariantMap>>("QVariantMap", TextKeys);
}

Registration const registration(addAll);

}  // namespace

}  // namespace bench
