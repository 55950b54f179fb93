#include "Works.h"

namespace counts {
namespace {

constexpr int Repetitions = 1000;

class Device : public lvReferencable {
 public:
  lvString const& getClassDesc() const override {
    static lvString const key("Device");
    return key;
  }

  // Describes the class to the library; once in a process.
  static void describe() {
    lvClassBuilder<Device>("Device")
        .field("id", &Device::id)
        .field("name", &Device::name)
        .field("port", &Device::port)
        .field("tags", &Device::tags)
        .registerClass();
  }

 private:
  lvArg id;
  lvArg name;
  lvArg port;
  lvArg tags;
};

lvClass classByName(lvString const& name) {
  return {lvtClassRegistry::getInstance()->getClass(name)};
}

void readField(int repetitions) {
  Device::describe();
  lvClass const described = classByName("Device");
  lvArg const device(*new Device);
  lvString const field("port");
  described->setObjectField(*device.getReferencable(), field, integer(502));
  int right = 0;
  repeat(repetitions, [&](int) {
    lvArg value;
    described->getObjectField(value, *device.getReferencable(), field);
    right += value.getInt() == 502 ? 1 : 0;
  });
  require(right == repetitions, "the field has its value");
}

void writeField(int repetitions) {
  Device::describe();
  lvClass const described = classByName("Device");
  lvArg const device(*new Device);
  lvString const field("name");
  lvString const value("pump room");
  int failed = 0;
  repeat(repetitions, [&](int) {
    failed |= described->setObjectField(*device.getReferencable(), field, value);
  });
  require(failed == 0, "the field is set");
}

// Looks the class up, makes an object of it, and releases that.
void makeObject(int repetitions) {
  Device::describe();
  lvString const name("Device");
  int made = 0;
  repeat(repetitions, [&](int) {
    lvArg const device(*classByName(name)->instantiateDefaultObject());
    made += device.getType() == lvArg::ObjectType ? 1 : 0;
  });
  require(made == repetitions, "an object is made");
}

}  // namespace

std::vector<Work> classWorks() {
  return {
      {"class-read-field-by-name", Repetitions, readField},
      {"class-write-field-by-name", Repetitions, writeField},
      {"class-make-object-by-name", Repetitions, makeObject},
  };
}

}  // namespace counts
