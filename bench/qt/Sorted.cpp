// QMap, beside SortedBench.cpp.

#include <QMap>
#include <QString>
#include <QVariant>

#include "bench/Bench.h"
#include "bench/SortedLists.h"
#include "bench/qt/QtMap.h"

namespace bench {

namespace {

void addAll() {
  addSortedMap<QtMap<QMap<int, QVariant>>>("Qt", Integers);
  addSortedMap<QtMap<QMap<QString, QVariant>>>("Qt", TextKeys);
}

Registration const registration(addAll);

}  // namespace

}  // namespace bench
