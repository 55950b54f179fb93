// Goes on all walks. What one of them finds wrong by itself ends the program.

#include <gtest/gtest.h>

#include "compare/ListWalks.h"
#include "compare/MapWalks.h"
#include "compare/StringWalks.h"
#include "compare/TextWalks.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  GTEST_FLAG_SET(throw_on_failure, true);
  compared::walkMaps();
  compared::walkLists();
  compared::walkStrings();
  compared::walkTexts();
}
