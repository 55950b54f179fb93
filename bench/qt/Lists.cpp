// QVariantList, beside ListsBench.cpp.

#include <QString>
#include <QVariant>
#include <string>

#include "bench/Bench.h"
#include "bench/Lists.h"

namespace bench {

namespace {

class QtList {
 public:
  using Value = QVariant;
  static QVariant makeValue(std::string const& text) { return QString::fromStdString(text); }

  void append(QVariant const& value) { list.append(value); }
  void prepend(QVariant const& value) { list.prepend(value); }
  QVariant at(int position) const { return list.at(position); }

  void push(QVariant const& value) { list.append(value); }
  QVariant pop() { return list.takeLast(); }

 private:
  QVariantList list;
};

void addAll() {
  addAppending<QtList>("Qt");
  addPrepending<QtList>("Qt");
  addStack<QtList>("Qt");
}

Registration const registration(addAll);

}  // namespace

}  // namespace bench
