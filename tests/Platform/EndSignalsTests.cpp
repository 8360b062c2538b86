#include "Platform/EndSignals.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <ostream>
#include <string>
#include <thread>

#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using EndSignals::Postponed;

/// How a program ended, and what it wrote before.
struct Life {
  std::string written;
  /// The number of the signal that ended it, or 0.
  int signalNumber = 0;

  bool operator==(const Life&) const = default;
};

void PrintTo(const Life& life, std::ostream* out) {
  *out << '"' << life.written << "\", signal " << life.signalNumber;
}

using Write = std::function<void(std::string_view)>;

/// The life of a copy of this program that runs the function and then ends.
Life lifeOf(const std::function<void(const Write&)>& function) {
  int channel[2];
  if (::pipe(channel) < 0) {
    return {"no pipe"};
  }
  const pid_t process = ::fork();
  if (process == 0) {
    for (const int signalNumber : {SIGTERM, SIGINT, SIGHUP}) {
      std::signal(signalNumber, SIG_DFL);
    }
    function([&channel](std::string_view text) { (void)!::write(channel[1], text.data(), text.size()); });
    ::_exit(0);
  }
  ::close(channel[1]);
  Life life;
  char block[256];
  for (ssize_t count; (count = ::read(channel[0], block, sizeof block)) > 0;) {
    life.written.append(block, static_cast<std::size_t>(count));
  }
  ::close(channel[0]);
  int status = 0;
  while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  life.signalNumber = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  return life;
}

struct SignalRow {
  const char* name;
  int number;
};

constexpr SignalRow signalRows[] = {{"SIGTERM", SIGTERM}, {"SIGINT", SIGINT}, {"SIGHUP", SIGHUP}};

class EndSignal : public testing::TestWithParam<SignalRow> {
 protected:
  static int number() { return GetParam().number; }
};

TEST_P(EndSignal, endsTheProgramAtOnceOutsideASection) {
  EXPECT_EQ(lifeOf([](const Write& write) {
              EndSignals::install();
              {
                const Postponed past;
              }
              write("before ");
              ::raise(number());
              write("after");
            }),
            (Life{"before ", number()}));
}

TEST_P(EndSignal, waitsForTheEndOfTheSection) {
  EXPECT_EQ(lifeOf([](const Write& write) {
              EndSignals::install();
              {
                const Postponed whole;
                ::raise(number());
                write("whole");
              }
              write("after");
            }),
            (Life{"whole", number()}));
}

TEST_P(EndSignal, sentToAnotherThreadWaitsToo) {
  EXPECT_EQ(lifeOf([](const Write& write) {
              EndSignals::install();
              {
                const Postponed whole;
                std::thread([] { ::raise(number()); }).join();
                write("whole");
              }
              write("after");
            }),
            (Life{"whole", number()}));
}

TEST_P(EndSignal, isNotPostponedWithoutInstall) {
  EXPECT_EQ(lifeOf([](const Write& write) {
              const Postponed nothing;
              write("before");
              ::raise(number());
              write("after");
            }),
            (Life{"before", number()}));
}

TEST_P(EndSignal, staysIgnored) {
  EXPECT_EQ(lifeOf([](const Write& write) {
              std::signal(number(), SIG_IGN);
              EndSignals::install();
              ::raise(number());
              write("outside ");
              {
                const Postponed whole;
                ::raise(number());
                write("inside ");
              }
              write("after");
            }),
            (Life{"outside inside after", 0}));
}

TEST_P(EndSignal, firstOfSeveralEndsTheProgram) {
  EXPECT_EQ(lifeOf([](const Write& write) {
              EndSignals::install();
              const Postponed whole;
              ::raise(number());
              for (const SignalRow& other : signalRows) {
                ::raise(other.number);
              }
              write("whole");
            }),
            (Life{"whole", number()}));
}

TEST_P(EndSignal, exceptionOutOfTheSectionEndsTheProgramToo) {
  EXPECT_EQ(lifeOf([](const Write& write) {
              EndSignals::install();
              try {
                const Postponed whole;
                ::raise(number());
                throw 1;
              } catch (int) {
                write("after");
              }
            }),
            (Life{"", number()}));
}

INSTANTIATE_TEST_SUITE_P(Table, EndSignal, testing::ValuesIn(signalRows), rowName);

TEST(EndSignals, sectionWithoutASignalChangesNothing) {
  EXPECT_EQ(lifeOf([](const Write& write) {
              EndSignals::install();
              for (int round = 0; round < 3; ++round) {
                const Postponed whole;
              }
              write("after");
            }),
            (Life{"after", 0}));
}

TEST(EndSignals, alarmOfTheProgramItselfKeepsItsMeaning) {
  EXPECT_EQ(lifeOf([](const Write&) {
              EndSignals::install();
              const Postponed whole;
              ::raise(SIGALRM);
            }),
            (Life{"", SIGALRM}));
}

TEST(EndSignals, sectionThatDoesNotEndIsEndedAfterThePatience) {
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(lifeOf([](const Write& write) {
              EndSignals::install();
              const Postponed whole;
              ::raise(SIGTERM);
              // A second signal does not prolong the wait.
              std::this_thread::sleep_for(std::chrono::seconds(2));
              ::raise(SIGINT);
              write("waits");
              std::this_thread::sleep_for(std::chrono::seconds(60));
              write("after");
            }),
            (Life{"waits", SIGTERM}));
  const auto taken = std::chrono::steady_clock::now() - begin;
  EXPECT_GT(taken, EndSignals::patience - std::chrono::milliseconds(100));
  EXPECT_LT(taken, EndSignals::patience + std::chrono::seconds(1));
}

/// The parent's signal comes at any moment: within sections, at their ends, and between them. No signal may
/// get lost, and none may interrupt a section.
TEST(EndSignals, signalAtAnyMomentEndsTheProgramBetweenSections) {
  for (int round = 0; round < 200; ++round) {
    const Life life = lifeOf([round](const Write& write) {
      EndSignals::install();
      std::thread([self = ::getpid(), round] {
        std::this_thread::sleep_for(std::chrono::microseconds(round * 7));
        ::kill(self, SIGTERM);
      }).detach();
      const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(3);
      while (std::chrono::steady_clock::now() < deadline) {
        const Postponed whole;
        write("(");
        write(")");
      }
    });
    ASSERT_EQ(life.signalNumber, SIGTERM) << "round " << round;
    ASSERT_TRUE(life.written.empty() || life.written.ends_with(")")) << life.written.size();
  }
}

}  // namespace
}  // namespace tarnwell::test
