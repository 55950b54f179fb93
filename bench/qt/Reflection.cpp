// Qt's properties and types by name, beside ReflectionBench.cpp.

#include <QByteArray>
#include <QMetaObject>
#include <QMetaProperty>
#include <QMetaType>
#include <QObject>
#include <QString>
#include <QVariant>
#include <array>
#include <memory>
#include <string>

#include "bench/Bench.h"
#include "bench/Fields.h"

namespace bench {

// An object with the fields of FieldNames.
class QtRecord : public QObject {
  Q_OBJECT
  Q_PROPERTY(QVariant identifier MEMBER identifier)
  Q_PROPERTY(QVariant name MEMBER name)
  Q_PROPERTY(QVariant port MEMBER port)
  Q_PROPERTY(QVariant place MEMBER place)

 private:
  QVariant identifier;
  QVariant name;
  QVariant port;
  QVariant place;
};

namespace {

class QtObject {
 public:
  using Name = QByteArray;
  using Value = QVariant;
  static QByteArray makeName(char const* name) { return {name}; }
  static QVariant makeValue(std::string const& text) { return QString::fromStdString(text); }

  QVariant get(QByteArray const& name) const { return record.property(name.constData()); }
  void set(QByteArray const& name, QVariant const& value) {
    record.setProperty(name.constData(), value);
  }
  QVariant get(int index) const { return propertyAt(index).read(&record); }
  void set(int index, QVariant const& value) { propertyAt(index).write(&record, value); }

 private:
  QMetaProperty propertyAt(int index) const {
    QMetaObject const& described = QtRecord::staticMetaObject;
    return described.property(described.propertyOffset() + index);
  }

  QtRecord record;
};

// What a type that is made by name is.
struct Fields {
  std::array<QVariant, FieldNames.size()> fields;
};

struct QtFactory {
  using Name = QByteArray;
  static QByteArray makeName(char const* name) {
    QMetaType::registerNormalizedTypedef(name, QMetaType::fromType<Fields>());
    return {name};
  }
  static auto make(QByteArray const& name) {
    QMetaType const type = QMetaType::fromName(name);
    auto const release = [type](void* object) { type.destroy(object); };
    return std::unique_ptr<void, decltype(release)>(type.create(), release);
  }
};

void addAll() {
  addFields<QtObject>("Qt");
  addFactory<QtFactory>("Qt");
}

Registration const registration(addAll);

}  // namespace

}  // namespace bench

#include "Reflection.moc"
