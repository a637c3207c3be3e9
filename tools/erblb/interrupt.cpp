#include "erblb/interrupt.h"

#include <array>
#include <cstring>
#include <string>

namespace ei4::erblb {

namespace {

constexpr std::array kNoted = {SIGHUP, SIGINT, SIGTERM};
constexpr std::array kIgnored = {SIGPIPE, SIGXFSZ};

volatile std::sig_atomic_t notedSignal = 0;

extern "C" void noteSignal(int number) { notedSignal = number; }

void install(int number, void (*handler)(int), struct sigaction& before) {
  sigaction(number, nullptr, &before);
  if (before.sa_handler == SIG_IGN) return;  // as nohup asks
  struct sigaction action = {};
  action.sa_handler = handler;  // without SA_RESTART: what waits for a lock must hear of the signal
  sigemptyset(&action.sa_mask);
  sigaction(number, &action, nullptr);
}

}  // namespace

Interrupted::Interrupted(int number)
    : std::runtime_error(std::string("interrupted: ") + strsignal(number)), signal(number) {}

InterruptGuard::InterruptGuard() {
  notedSignal = 0;
  auto* before = m_before.begin();
  for (const int number : kNoted) install(number, noteSignal, *before++);
  for (const int number : kIgnored) install(number, SIG_IGN, *before++);
}

InterruptGuard::~InterruptGuard() {
  const auto* before = m_before.begin();
  for (const int number : kNoted) sigaction(number, before++, nullptr);
  for (const int number : kIgnored) sigaction(number, before++, nullptr);
}

void throwIfInterrupted() {
  if (notedSignal != 0) throw Interrupted(notedSignal);
}

}  // namespace ei4::erblb
