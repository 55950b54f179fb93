// Does one work a number of rounds, so that its instructions can be counted from outside.
//
//   CountedWorks                lists the works, each with its repetitions in a round
//   CountedWorks NAME ROUNDS    does one
//
// The exit status is 0 when all was done as it should be, 1 when the work did something else, and 2
// after wrong use.

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "Works.h"

namespace {

using counts::Work;

std::vector<Work> allWorks() {
  std::vector<Work> all;
  for (auto* const works :
       {counts::cellWorks, counts::textWorks, counts::stringWorks, counts::mapWorks,
        counts::listWorks, counts::sortedWorks, counts::classWorks}) {
    std::vector<Work> const more = works();
    all.insert(all.end(), more.begin(), more.end());
  }
  return all;
}

int list(std::vector<Work> const& works) {
  for (Work const& work : works) {
    std::printf("%s %d\n", work.name.c_str(), work.repetitions);
  }
  return 0;
}

int run(std::vector<Work> const& works, std::string const& name, int rounds) {
  auto const work = std::find_if(works.begin(), works.end(),
                                 [&name](Work const& listed) { return listed.name == name; });
  if (work == works.end() || rounds <= 0) {
    return 2;
  }
  work->run(rounds * work->repetitions);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<Work> const works = allWorks();
  switch (argc) {
    case 1:
      return list(works);
    case 3:
      return run(works, argv[1], static_cast<int>(std::strtol(argv[2], nullptr, 10)));
    default:
      return 2;
  }
}
