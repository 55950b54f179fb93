// QStrings that a QSet keeps, beside StringsBench.cpp: the nearest that Qt has to interned strings.

#include <QSet>
#include <QString>
#include <string>

#include "bench/Bench.h"
#include "bench/Interning.h"

namespace bench {

namespace {

struct InSet {
  using Handle = QString;
  static Handle intern(std::string const& text) {
    static QSet<QString> set;
    return *set.insert(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
  }
};

void addAll() { addFinding<InSet>("QSet"); }

Registration const registration(addAll);

}  // namespace

}  // namespace bench
