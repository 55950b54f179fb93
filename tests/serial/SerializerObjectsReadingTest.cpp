// What the serializer builds from the answers of a source for objects, and what it prints.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "support/CellWords.h"
#include "support/FieldObjects.h"
#include "support/SourceRuns.h"
#include "tarselvalues/serial/lvtStringArgSource.h"

namespace {

using test::beginObject;
using test::frameEnd;
using test::integer;
using test::item;
using test::readItem;
using test::readObject;
using test::Script;
using test::string;

constexpr char UnknownClass[] = "CS_ERR_UNKNOWN_CLASS_KEY\n";
constexpr char NoCtor[] = "CS_ERR_NO_CLASS_CTOR\n";
constexpr char SetupError[] = "CS_ERR_REF_SETUP_ERROR\n";
constexpr char EndOfInput[] = "Unknown error: 9";

// What one operation answered, and behind a "|" what it printed.
template <class Read>
std::string withPrinted(Read read) {
  std::string outcome;
  std::string const printed = test::printedBy([&] { outcome = read(); });
  return outcome + "|" + printed;
}

std::string objectRun(lvArg const& name, Script const& script) {
  return withPrinted([&] { return readObject(name, script); });
}
std::string objectRun(char const* name, Script const& script) {
  return objectRun(string(name), script);
}

std::string itemRun(Script const& script) {
  return withPrinted([&] { return readItem(script); });
}

// Reads one item of a text.
std::string textRun(std::string const& text) {
  return withPrinted([&] {
    lvtStringArgSource parser(text.data(), static_cast<int>(text.size()));
    lvArg out = test::untouched();
    int const status = test::HeldSerializer()->deserializeItemInto(out, parser);
    return std::to_string(status) + ": " + test::describedOutput(out);
  });
}

class DeserializeObject : public testing::Test {
 protected:
  static void SetUpTestSuite() { test::registerClasses(); }
};

// ---- An object of its fields -------------------------------------------------------------------

TEST_F(DeserializeObject, SetsTheFieldsInTheOrderOfTheClass) {
  EXPECT_EQ(objectRun("Point", {item(3), item(4), frameEnd(), item(5)}), "0: *Point{3,4} +1|");
  EXPECT_EQ(itemRun({beginObject("Point"), item(3), item(4), frameEnd()}), "0: *Point{3,4}|");
  EXPECT_EQ(textRun("*Point{3,4}"), "0: *Point{3,4}|");
}

TEST_F(DeserializeObject, MakesANewObjectEachTime) {
  lvArg first;
  lvArg second;
  test::ScriptedSource source({item(1), frameEnd(), item(1), frameEnd()});
  test::HeldSerializer const serializer;
  EXPECT_EQ(serializer->deserializeReferencableContentsInto(first, string("Point"), source), 0);
  EXPECT_EQ(serializer->deserializeReferencableContentsInto(second, string("Point"), source), 0);
  EXPECT_FALSE(first.eq(second));
  EXPECT_EQ(first.getType(), lvArg::ObjectType);
  EXPECT_EQ(test::countOf(first), 1);
}

TEST_F(DeserializeObject, SetsInheritedFieldsFirst) {
  EXPECT_EQ(textRun("*Solid{1,2,3}"), "0: *Solid{1,2,3}|");
}

TEST_F(DeserializeObject, ReadsANameInQuotes) {
  EXPECT_EQ(textRun("*\"my class\"{\"a%0Ab\",_tmp1}"), "0: *my class{'a\\x0Ab','_tmp1'}|");
  EXPECT_EQ(textRun("*\"Point\"{1,2}"), "0: *Point{1,2}|");
  EXPECT_EQ(textRun("*\"\"{1,2}"), "0: *{1,2}|");
}

TEST_F(DeserializeObject, ReadsBlanksBetweenItsTokens) {
  EXPECT_EQ(textRun(" * Point { 1 , 2 } "), "0: *Point{1,2}|");
  EXPECT_EQ(textRun("*Point junk{1}"), "0: *Point{1,nil}|");
}

TEST_F(DeserializeObject, TellsNamesApartByEachCharacter) {
  EXPECT_EQ(textRun("*point{}"), std::string("-4: same|") + UnknownClass);
  EXPECT_EQ(textRun("*Poin{}"), std::string("-4: same|") + UnknownClass);
  EXPECT_EQ(textRun("*Point_{}"), std::string("-4: same|") + UnknownClass);
}

TEST_F(DeserializeObject, KeepsTheDefaultsOfFieldsWithoutAValue) {
  EXPECT_EQ(textRun("*Segment{}"), "0: *Segment{nil,nil,7}|");
  EXPECT_EQ(textRun("*Segment{1}"), "0: *Segment{1,nil,7}|");
  EXPECT_EQ(textRun("*Segment{1,2}"), "0: *Segment{1,2,7}|");
  EXPECT_EQ(textRun("*Segment{1,2,3}"), "0: *Segment{1,2,3}|");
}

TEST_F(DeserializeObject, ReplacesADefaultByNil) {
  EXPECT_EQ(textRun("*Segment{1,2,#nil}"), "0: *Segment{1,2,nil}|");
  // An item that is missing is nil too.
  EXPECT_EQ(textRun("*Segment{,,,}"), "0: *Segment{nil,nil,nil}|");
}

TEST_F(DeserializeObject, TakesValuesOfAnyKind) {
  EXPECT_EQ(textRun("*Segment{*Point{1,2},{(k={3})},{}}"),
            "0: *Segment{*Point{1,2},{'k'=[3]},[]}|");
}

TEST_F(DeserializeObject, MayBeElementKeyAndValue) {
  EXPECT_EQ(textRun("{1,*Point{2,3},4}"), "0: [1,*Point{2,3},4]|");
  EXPECT_EQ(textRun("{(*Point{1,2}=*Point{3,4})}"), "0: {*Point{1,2}=*Point{3,4}}|");
}

TEST_F(DeserializeObject, ReadsOverCodesThatMeanNothing) {
  for (int const code : {1, 5, 8, 10, 32, -1, -6}) {
    test::Answer const none = test::nothing(code);
    EXPECT_EQ(objectRun("Point", {none, item(1), none, none, item(2), none, frameEnd(), none}),
              "0: *Point{1,2} +1|")
        << code;
  }
}

TEST_F(DeserializeObject, IsMadeBeforeItsValuesAreRead) {
  class LoggingSource : public test::ScriptedSource {
   public:
    using ScriptedSource::ScriptedSource;
    int getArg(lvArg& out) override {
      test::Watched::log() += "read ";
      return ScriptedSource::getArg(out);
    }
  };
  test::Watched::log().clear();
  lvArg out;
  LoggingSource source({item(1), frameEnd()});
  test::HeldSerializer()->deserializeReferencableContentsInto(out, string("Watched"), source);
  EXPECT_EQ(test::Watched::log(), "made read read ");
}

TEST_F(DeserializeObject, IsCompleteBeforeItIsStored) {
  class LookingSource : public test::ScriptedSource {
   public:
    explicit LookingSource(lvArg const& watched)
        : ScriptedSource({beginObject("Point"), item(1), item(2), frameEnd(), item(3), frameEnd()}),
          watched_(watched) {}
    int getArg(lvArg& out) override {
      seen += test::described(watched_) + " ";
      return ScriptedSource::getArg(out);
    }
    std::string seen;

   private:
    lvArg const& watched_;
  };
  lvVector vector(2);
  LookingSource source(vector);
  EXPECT_EQ(test::HeldSerializer()->deserializeVectorContentsInto(vector, source), 0);
  EXPECT_EQ(source.seen, "[] [] [] [] [*Point{1,2}] [*Point{1,2},3] ");
}

TEST_F(DeserializeObject, IsOfTheClassThatItsNameHasWhenItBegins) {
  // A source may keep one string and give it another text for each object.
  class RenamingSource : public test::ScriptedSource {
   public:
    explicit RenamingSource(lvArg const& name)
        : ScriptedSource({test::begin(name), frameEnd(), test::begin(name), frameEnd()}),
          name_(static_cast<lvrString&>(*name.getReferencable())) {}
    int getArg(lvArg& out) override {
      if (reads() == 2) {
        name_.setStringData("Tabled", -1, lvrString::CopyAndOwn);
      }
      return ScriptedSource::getArg(out);
    }

   private:
    lvrString& name_;
  };
  lvArg const name = string("Blank");
  RenamingSource source(name);
  lvArg out;
  EXPECT_EQ(test::HeldSerializer()->deserializeInto(out, source), 0);
  EXPECT_EQ(test::described(out), "[*Blank{},*Tabled{}]");
}

TEST_F(DeserializeObject, MayHaveItsNameSetAnewByItsConstructor) {
  static lvrString* name = nullptr;
  class Renaming : public test::Point {
   public:
    static lvReferencable* make() {
      name->setStringData("Point", -1, lvrString::CopyAndOwn);
      return new Renaming;
    }
  };
  test::registerAs(string("Renaming"), test::likePoint(string("Renaming"), &Renaming::make));
  lvtStringArgSource parser("*Point{1,2},3}", -1);
  lvArg const held = string("Renaming");
  name = static_cast<lvrString*>(held.getReferencable());
  lvArg out;
  EXPECT_EQ(test::HeldSerializer()->deserializeReferencableContentsInto(out, held, parser), 0);
  auto const* const renaming = dynamic_cast<Renaming*>(out.getReferencable());
  ASSERT_NE(renaming, nullptr);
  EXPECT_EQ(dynamic_cast<Renaming*>(renaming->x.getReferencable()), nullptr);
  EXPECT_EQ(test::described(renaming->x), "*Point{1,2}");
}

TEST_F(DeserializeObject, LetsPassWhatTheEndOfADefaultThrows) {
  class Throwing : public lvReferencable {
   public:
    int finalize() override { throw std::runtime_error("end"); }
  };
  static Throwing* throwing = nullptr;
  class Filled : public test::Point {
   public:
    Filled() { x = *(throwing = new Throwing); }
    static lvReferencable* make() { return new Filled; }
  };
  lvClass const filled = test::likePoint(string("Filled"), &Filled::make);
  test::registerAs(string("Filled"), filled);
  lvtStringArgSource parser("*Filled{1,2}", -1);
  lvArg out;
  EXPECT_THROW(test::HeldSerializer()->deserializeItemInto(out, parser), std::runtime_error);
  EXPECT_TRUE(out.isNil());
  delete throwing;  // It has not come to its end.
}

TEST_F(DeserializeObject, ReplacesWhatTheOutputHeld) {
  lvArg const old = string("old");
  lvArg out = old;
  test::ScriptedSource source({item(1), frameEnd()});
  EXPECT_EQ(
      test::HeldSerializer()->deserializeReferencableContentsInto(out, string("Point"), source), 0);
  EXPECT_EQ(test::described(out), "*Point{1,nil}");
  EXPECT_EQ(test::countOf(old), 1);
}

TEST_F(DeserializeObject, MayBeReadIntoItsOwnName) {
  lvArg nameAndOut = string("Point");
  test::ScriptedSource source({item(1), frameEnd()});
  EXPECT_EQ(
      test::HeldSerializer()->deserializeReferencableContentsInto(nameAndOut, nameAndOut, source),
      0);
  EXPECT_EQ(test::described(nameAndOut), "*Point{1,nil}");
}

// ---- Names -------------------------------------------------------------------------------------

TEST_F(DeserializeObject, IsOfTheClassThatItsNameIsRegisteredFor) {
  EXPECT_EQ(textRun("*Alias{1,2}"), "0: *Point{1,2}|");
  EXPECT_EQ(textRun("*Nameless{1,2}"), "0: *Nameless{1,2}|");
}

TEST_F(DeserializeObject, FailsForAnUnknownNameAndReadsNothing) {
  EXPECT_EQ(objectRun("Stranger", {item(1), frameEnd()}),
            std::string("-4: same +2|") + UnknownClass);
  EXPECT_EQ(textRun("*Nope{1}"), std::string("-4: same|") + UnknownClass);
}

TEST_F(DeserializeObject, FailsWhenWhatIsRegisteredIsNoClass) {
  EXPECT_EQ(objectRun("Bogus", {item(1), frameEnd()}), std::string("-4: same +2|") + UnknownClass);
}

TEST_F(DeserializeObject, FailsForNamesThatAreNoTexts) {
  for (lvArg const& name : {lvArg(), integer(25), test::pointer(24), test::vectorOf({}),
                            lvtClassRegistry::getInstance()->getClass(lvString("Point"))}) {
    EXPECT_EQ(objectRun(name, {item(1)}), std::string("-4: same +1|") + UnknownClass);
  }
}

TEST_F(DeserializeObject, TakesInternedNamesAndOthers) {
  EXPECT_EQ(objectRun(lvString("Point"), {frameEnd()}), "0: *Point{nil,nil}|");
  EXPECT_EQ(objectRun(string("Point"), {frameEnd()}), "0: *Point{nil,nil}|");
}

// ---- Classes without a constructor -------------------------------------------------------------

TEST_F(DeserializeObject, FailsWithoutAConstructorAndReadsNothing) {
  EXPECT_EQ(objectRun("Abstract", {item(1), frameEnd()}), std::string("-5: same +2|") + NoCtor);
  EXPECT_EQ(textRun("*Abstract{1,2}"), std::string("-5: same|") + NoCtor);
}

TEST_F(DeserializeObject, FailsWhenTheConstructorMakesNothing) {
  EXPECT_EQ(objectRun("Barren", {item(1), frameEnd()}), std::string("-5: same +2|") + NoCtor);
}

// ---- More values than fields -------------------------------------------------------------------

TEST_F(DeserializeObject, FailsForMoreValuesThanFields) {
  EXPECT_EQ(objectRun("Point", {item(1), item(2), item(3), frameEnd(), item(4)}),
            std::string("-6: same +1|") + SetupError);
  EXPECT_EQ(textRun("*Point{1,2,3,4,5}"), std::string("-6: same|") + SetupError);
}

TEST_F(DeserializeObject, WithoutFieldsTakesNoValues) {
  for (std::string const name : {"Blank", "Tabled"}) {
    EXPECT_EQ(textRun("*" + name + "{}"), "0: *" + name + "{}|");
    EXPECT_EQ(textRun("*" + name + "{1}"), std::string("-6: same|") + SetupError);
    EXPECT_EQ(textRun("*" + name + "{#nil}"), std::string("-6: same|") + SetupError);
  }
}

TEST_F(DeserializeObject, FailsForAFieldThatWasNeverFilledIn) {
  EXPECT_EQ(textRun("*Hollow{}"), "0: *Hollow{nil,nil}|");
  EXPECT_EQ(textRun("*Hollow{1}"), std::string("-6: same|") + SetupError);
  EXPECT_EQ(textRun("*Half{1}"), "0: *Half{1,nil}|");
  EXPECT_EQ(textRun("*Half{1,2}"), std::string("-6: same|") + SetupError);
}

TEST_F(DeserializeObject, IsDroppedWhenAFieldFails) {
  test::Watched::log().clear();
  lvArg const value = string("value");
  EXPECT_EQ(objectRun("Watched", {item(value), item(value), frameEnd()}),
            std::string("-6: same|") + SetupError);
  EXPECT_EQ(test::Watched::log(), "made gone ");
  EXPECT_EQ(test::countOf(value), 1);
}

TEST_F(DeserializeObject, DropsValuesTooManyFromTheLastOnAndThenTheObject) {
  // Five values, which it keeps no references to, for an object of two fields.
  class MakingSource : public lvArgSource {
   public:
    int getArg(lvArg& out) override {
      int const read = reads_++;
      if (read == 0) {
        out = string("Point");
        return SOURCE_FRAME_BEGIN;
      }
      out = read <= 5 ? test::logging(dropped, std::to_string(read)) : lvArg();
      return read <= 5 ? SOURCE_ITEM : SOURCE_FRAME_END;
    }
    std::string dropped;

   private:
    int reads_ = 0;
  } source;
  lvArg out;
  EXPECT_EQ(test::printedBy([&] {
              EXPECT_EQ(test::HeldSerializer()->deserializeItemInto(out, source),
                        lvrCommonSerializer::CS_ERR_REF_SETUP_ERROR);
            }),
            SetupError);
  EXPECT_EQ(source.dropped, "54321");
}

TEST_F(DeserializeObject, PrintsOneLineForSeveralValuesTooMany) {
  EXPECT_EQ(textRun("{*Blank{1,2,3},*Blank{4}}"), std::string("0: []|") + SetupError + SetupError);
}

// ---- Input that ends in an object --------------------------------------------------------------

TEST_F(DeserializeObject, HandsOnTheEndOfTheInputWithinIt) {
  EXPECT_EQ(objectRun("Point", {item(1), item(2)}), std::string("9: same|") + EndOfInput);
  EXPECT_EQ(objectRun("Blank", {}), std::string("9: same|") + EndOfInput);
}

TEST_F(DeserializeObject, IsDroppedWhenTheInputEndsWithinIt) {
  test::Watched::log().clear();
  EXPECT_EQ(objectRun("Watched", {item(1)}), std::string("9: same|") + EndOfInput);
  EXPECT_EQ(test::Watched::log(), "made gone ");
}

TEST_F(DeserializeObject, GivesTheEndOfTheInputPrecedenceOverValuesTooMany) {
  EXPECT_EQ(objectRun("Blank", {item(1)}), std::string("9: same|") + EndOfInput);
}

TEST_F(DeserializeObject, NamesTheEndOfTheInputForEachObjectItIsIn) {
  EXPECT_EQ(textRun("*Point{*Point{*Nope{1"),
            std::string("0: nil|") + UnknownClass + EndOfInput + EndOfInput);
}

// What is read of a text that ends early, by the number of its characters.
TEST_F(DeserializeObject, NeedsItsClosingBracket) {
  std::string const text = "{*Point{1,2},3}";
  for (std::size_t length = 0; length <= text.size(); ++length) {
    std::string const expected = length == 0   ? "9: same|"
                                 : length < 8  ? "0: []|"
                                 : length < 12 ? std::string("0: [nil]|") + EndOfInput
                                 : length < 14 ? "0: [*Point{1,2}]|"
                                               : "0: [*Point{1,2},3]|";
    EXPECT_EQ(textRun(text.substr(0, length)), expected) << length;
  }
}

TEST_F(DeserializeObject, LeavesTheKeyOfATupleToAnObjectThatIsCutOff) {
  EXPECT_EQ(textRun("{(k=*Point{1"), std::string("0: {}|") + EndOfInput);
  EXPECT_EQ(textRun("{(*Point{1"), std::string("0: {}|") + EndOfInput);
}

// ---- Objects that fail within others -----------------------------------------------------------

TEST_F(DeserializeObject, TakesTheValuesOfAnObjectThatFailsInIt) {
  EXPECT_EQ(textRun("*Segment{0,*Nope{1,2},3}"), std::string("0: *Segment{0,1,2}|") + UnknownClass);
  EXPECT_EQ(textRun("*Segment{0,*Abstract{1},3}"), std::string("0: *Segment{0,1,7}|") + NoCtor);
}

TEST_F(DeserializeObject, LeavesOutAnObjectThatHasTooManyValues) {
  EXPECT_EQ(textRun("*Segment{0,*Point{1,2,3},4}"),
            std::string("0: *Segment{0,4,7}|") + SetupError);
}

TEST_F(DeserializeObject, TakesTheItemsOfATupleInIt) {
  EXPECT_EQ(textRun("*Segment{0,(a=1),2}"), "0: *Segment{0,'a',1}|");
}

TEST_F(DeserializeObject, LetsAMapFailThatHoldsItOutsideOfATuple) {
  EXPECT_EQ(textRun("{(a=1),*Point{1,2}}"), "-1: same|");
}

TEST_F(DeserializeObject, IsSkippedInATupleWhenItFails) {
  EXPECT_EQ(textRun("{(*Point{1,2,3}=*Point{4,5})}"), std::string("0: {}|") + SetupError);
  EXPECT_EQ(textRun("{(a=*Blank{1}=2)}"), std::string("0: {'a'=2}|") + SetupError);
}

// ---- Built-in classes --------------------------------------------------------------------------

// The class key and the tag of what a text reads as, and what is printed.
std::string builtin(std::string const& text) {
  return withPrinted([&] {
    lvtStringArgSource parser(text.data(), static_cast<int>(text.size()));
    lvArg out;
    EXPECT_EQ(test::HeldSerializer()->deserializeItemInto(out, parser), 0);
    return test::textOf(out.getReferencable()->getClassDesc()) + " " +
           std::to_string(out.getType());
  });
}

TEST(DeserializeBuiltin, MakesAnEmptyObjectOfItsClass) {
  EXPECT_EQ(builtin("*Class{}"), "Class 27|");
  EXPECT_EQ(builtin("*DLList{}"), "DLList 25|");
  EXPECT_EQ(builtin("*Stack{}"), "Stack 24|");
  EXPECT_EQ(builtin("*String{}"), "String 19|");
  EXPECT_EQ(builtin("*Vector{}"), "Vector 25|");
  // A tuple set has no key of its own.
  EXPECT_EQ(builtin("*TupleSet{}"), "Referencable 24|");
}

TEST(DeserializeBuiltin, TakesNoValues) {
  for (std::string const name :
       {"Class", "DLList", "HashMap", "Stack", "String", "TupleSet", "Vector"}) {
    EXPECT_EQ(textRun("*" + name + "{1}"), std::string("-6: same|") + SetupError) << name;
    EXPECT_EQ(textRun("*" + name + "{"), std::string("0: nil|") + EndOfInput) << name;
  }
}

TEST(DeserializeBuiltin, IsUnknownForTheClassesThatAreNotRegistered) {
  for (std::string const name : {"SortedArrayList", "CommonSerializer", "Referencable"}) {
    EXPECT_EQ(textRun("*" + name + "{}"), std::string("-4: same|") + UnknownClass) << name;
  }
}

TEST(DeserializeBuiltin, MakesAClassThatIsNotTheRegisteredOne) {
  lvtStringArgSource parser("*Class{}", -1);
  lvArg out;
  EXPECT_EQ(test::HeldSerializer()->deserializeItemInto(out, parser), 0);
  EXPECT_TRUE(lvClass(out).getClassDesc().isNil());
  EXPECT_FALSE(out.eq(lvtClassRegistry::getInstance()->getClass(lvString("Class"))));
}

TEST(DeserializeBuiltin, MayBeAFieldOrAnElement) {
  test::registerClasses();
  EXPECT_EQ(textRun("*Point{*Vector{},*DLList{}}"), "0: *Point{[],[]}|");
  EXPECT_EQ(textRun("{(k=*TupleSet{}),(l=*HashMap{})}"), "0: {'k'={},'l'=[]}|");
}

// ---- Messages ----------------------------------------------------------------------------------

TEST_F(DeserializeObject, PrintsItsMessagesInTheOrderOfTheProblems) {
  EXPECT_EQ(
      textRun("{*Blank{1},*Blank{2,*Nope{3},*Abstract{,*Point{1"),
      std::string("0: [nil,nil]|") + SetupError + UnknownClass + SetupError + NoCtor + EndOfInput);
}

TEST_F(DeserializeObject, PrintsNothingOnStandardError) {
  testing::internal::CaptureStderr();
  for (std::string const text : {"*Nope{1}", "*Abstract{1}", "*Blank{1}", "*Point{1"}) {
    textRun(text);
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(DeserializeObject, PrintsNothingAboutSoundInput) {
  EXPECT_EQ(textRun("{*Point{1,*Segment{}},(a=1)}"), "0: [*Point{1,*Segment{nil,nil,7}},'a',1]|");
}

}  // namespace
