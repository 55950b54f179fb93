// Fields and objects by name, through class descriptors.

#include <tarselvalues/tarselvalues.h>

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "bench/Bench.h"
#include "bench/Fields.h"
#include "bench/OurCells.h"
#include "bench/StandardValues.h"

namespace bench {

namespace {

// ---- Ours --------------------------------------------------------------------------------------

class OurRecord : public lvReferencable {
 public:
  lvArg identifier;
  lvArg name;
  lvArg port;
  lvArg place;
};

lvClassBuilder<OurRecord> describe(char const* className) {
  lvClassBuilder<OurRecord> builder(className);
  builder.field(FieldNames[0], &OurRecord::identifier)
      .field(FieldNames[1], &OurRecord::name)
      .field(FieldNames[2], &OurRecord::port)
      .field(FieldNames[3], &OurRecord::place);
  return builder;
}

class OurObject : public OurCells {
 public:
  using Name = lvString;
  static lvString makeName(char const* name) { return {name}; }

  OurObject() : described(describe("Record").build()), record(new OurRecord), held(*record) {}

  lvArg get(lvString const& name) const {
    lvArg value;
    described->getObjectField(value, *record, name);
    return value;
  }
  void set(lvString const& name, lvArg const& value) {
    described->setObjectField(*record, name, value);
  }
  lvArg get(int index) const {
    lvArg value;
    described->getFieldAt(value, *record, lvrClass::Fields, index);
    return value;
  }
  void set(int index, lvArg const& value) {
    described->setFieldAt(*record, value, lvrClass::Fields, index);
  }

 private:
  lvClass described;
  OurRecord* record;
  lvArg held;
};

struct OurFactory {
  using Name = lvString;
  static lvString makeName(char const* name) {
    describe(name).registerClass();  // The first call of all; the others find the name taken.
    return {name};
  }
  static lvArg make(lvString const& name) {
    lvClass const described(lvtClassRegistry::getInstance()->getClass(name));
    return {*described->instantiateDefaultObject()};
  }
};

// ---- The standard library's --------------------------------------------------------------------

class FunctionObject {
 public:
  using Name = std::string;
  using Value = VariantValue;
  static std::string makeName(char const* name) { return name; }
  static VariantValue makeValue(std::string const& text) { return sharedText(text); }

  VariantValue get(std::string const& name) const {
    return accessors().find(name)->second.get(*this);
  }
  void set(std::string const& name, VariantValue const& value) {
    accessors().find(name)->second.set(*this, value);
  }
  VariantValue get(int index) const { return accessorAt(index).get(*this); }
  void set(int index, VariantValue const& value) { accessorAt(index).set(*this, value); }

 private:
  struct Accessor {
    std::function<VariantValue(FunctionObject const&)> get;
    std::function<void(FunctionObject&, VariantValue const&)> set;
  };
  using Accessors = std::unordered_map<std::string, Accessor>;

  static Accessor makeAccessor(std::size_t field) {
    return {[field](FunctionObject const& object) { return object.fields[field]; },
            [field](FunctionObject& object, VariantValue const& value) {
              object.fields[field] = value;
            }};
  }

  static Accessors const& accessors() {
    static Accessors const all = [] {
      Accessors made;
      for (std::size_t i = 0; i < FieldNames.size(); ++i) {
        made[FieldNames[i]] = makeAccessor(i);
      }
      return made;
    }();
    return all;
  }

  static Accessor const& accessorAt(int index) {
    static std::vector<Accessor> const all = {makeAccessor(0), makeAccessor(1), makeAccessor(2),
                                              makeAccessor(3)};
    return all[static_cast<std::size_t>(index)];
  }

  std::array<VariantValue, FieldNames.size()> fields;
};

struct FunctionFactory {
  using Name = std::string;
  static std::string makeName(char const* name) { return name; }
  static std::shared_ptr<FunctionObject> make(std::string const& name) {
    return makers().find(name)->second();
  }

 private:
  using Makers = std::unordered_map<std::string, std::function<std::shared_ptr<FunctionObject>()>>;

  static Makers const& makers() {
    static Makers const all = [] {
      Makers made;
      for (char const* const name : ClassNames) {
        made[name] = [] { return std::make_shared<FunctionObject>(); };
      }
      return made;
    }();
    return all;
  }
};

// ------------------------------------------------------------------------------------------------

void addAll() {
  addFields<OurObject>("ours");
  addFactory<OurFactory>("ours");
  addFields<FunctionObject>("std::function");
  addFactory<FunctionFactory>("std::function");
}

Registration const registration(addAll);

}  // namespace

}  // namespace bench
