// QVariant, beside CopyBench.cpp.

#include <benchmark/benchmark.h>

#include <QSharedPointer>
#include <QString>
#include <QVariant>
#include <string>

#include "bench/Bench.h"
#include "bench/Copying.h"

namespace bench {

namespace {

struct Point {
  QVariant x;
  QVariant y;
};

template <class Object>
void makeQt(benchmark::State& state) {
  for (auto _ : state) {
    QSharedPointer<Object> held = QSharedPointer<Object>::create();
    benchmark::DoNotOptimize(held);
  }
}

void addAll() {
  addTexts<QVariant>("Qt", [](std::string const& text) { return QVariant(QString(text.c_str())); });
  addIntegers("Qt", QVariant(1), QVariant(2));
  add("make and end a string object", "Qt", makeQt<QString>);
  add("make and end an object of two cells", "Qt", makeQt<Point>);
}

Registration const registration(addAll);

}  // namespace

}  // namespace bench
