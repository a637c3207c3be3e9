#include "interleaved.h"

#include <algorithm>
#include <ctime>
#include <stdexcept>

namespace ei4::bench {
namespace {

constexpr std::size_t kFewestDecodes = 3;
constexpr double kTurn = 10e6;  // nanoseconds, long enough to be at home in the caches again

/// Processor time of this thread, the kernel's part included: what others do meanwhile does not count.
double nanosecondsSpent() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

/// One contestant's share of the run over one picture.
class Runner {
 public:
  Runner(const Contestant& who, const Picture& what)
      : contestant(who), picture(what), coded(who.code(what)) {}

  /// The first decode also touches all of `out` for the ones that are timed.
  void check(Bytes& out) const {
    std::fill(out.begin(), out.end(), static_cast<unsigned char>(0x5A));
    contestant.decode(coded, out);
    if (out != picture.pixels) {
      throw std::runtime_error(contestant.title() + " changes the pixels of " + picture.name);
    }
  }

  bool wantsMore(double nanoseconds) const { return spent < nanoseconds || times.size() < kFewestDecodes; }

  void takeTurn(Bytes& out) {
    double turn = 0;
    while (turn < kTurn) {
      const double start = nanosecondsSpent();
      contestant.decode(coded, out);
      times.push_back(nanosecondsSpent() - start);
      turn += times.back();
    }
    spent += turn;
  }

  Figures figures() {
    const double pixels = static_cast<double>(picture.width) * picture.height;
    std::sort(times.begin(), times.end());
    return {static_cast<double>(coded.size()) * 8 / pixels, times.front() / pixels,
            times[times.size() / 2] / pixels, static_cast<int>(times.size())};
  }

 private:
  const Contestant& contestant;
  const Picture& picture;
  Bytes coded;
  std::vector<double> times;
  double spent = 0;
};

}  // namespace

std::vector<Figures> measureInTurns(const std::vector<std::unique_ptr<Contestant>>& contestants,
                                    const Picture& picture, double seconds) {
  Bytes out(picture.pixels.size());
  std::vector<Runner> runners;
  runners.reserve(contestants.size());
  for (const auto& contestant : contestants) {
    runners.emplace_back(*contestant, picture);
    runners.back().check(out);
  }
  const double most = seconds * 1e9;
  for (bool ready = false; !ready;) {
    ready = true;
    for (auto& runner : runners) {
      if (!runner.wantsMore(most)) continue;
      runner.takeTurn(out);
      ready = false;
    }
  }
  std::vector<Figures> figures;
  figures.reserve(runners.size());
  for (auto& runner : runners) figures.push_back(runner.figures());
  return figures;
}

}  // namespace ei4::bench
