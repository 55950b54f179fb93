// Qt's JSON, beside TextBench.cpp. Its values are QVariants, as a program keeps them.

#include <benchmark/benchmark.h>

#include <QByteArray>
#include <QJsonDocument>
#include <QString>
#include <QVariant>
#include <string>

#include "bench/Bench.h"
#include "bench/Document.h"
#include "bench/Json.h"

namespace bench {

namespace {

QByteArray write(QVariant const& value) {
  return QJsonDocument::fromVariant(value).toJson(QJsonDocument::Compact);
}

QVariant read(QByteArray const& text) { return QJsonDocument::fromJson(text).toVariant(); }

void writeQt(benchmark::State& state, Document const* document) {
  QVariant const value = read(QByteArray::fromStdString(jsonOf(document->root)));
  for (auto _ : state) {
    QByteArray text = write(value);
    benchmark::DoNotOptimize(text);
  }
}

void readQt(benchmark::State& state, Document const* document) {
  QByteArray const written = QByteArray::fromStdString(jsonOf(document->root));
  if (write(read(written)) != written) {
    state.SkipWithError("does not read what it wrote");
  }
  for (auto _ : state) {
    QVariant value = read(written);
    benchmark::DoNotOptimize(value);
  }
}

void addAll() {
  for (Document const& document : documents()) {
    add("write " + document.name, "Qt", writeQt, &document);
    add("read " + document.name, "Qt", readQt, &document);
  }
}

Registration const registration(addAll);

}  // namespace

}  // namespace bench
