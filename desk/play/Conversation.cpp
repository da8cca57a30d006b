#include "desk/play/Conversation.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

namespace desk {
namespace {

using std::chrono::milliseconds;

/// From when on the GUI is said to be busy; most answers come sooner.
constexpr milliseconds kBusyAfter(150);

/// How often what a job changes is asked for.
constexpr milliseconds kBetweenShows(50);

/// How often a count-down and the sign of being busy change.
constexpr milliseconds kTick(100);

constexpr milliseconds kNever(60000);

}  // namespace

void Conversation::takeMessages(const TakeFrame& take) {
  do {
    if (auto message = supervisor_.receive()) this->take(std::move(*message), take);
  } while (supervisor_.hasMessage());
  if (isFree()) {
    waiting_since_.reset();
  } else if (!waiting_since_) {
    waiting_since_ = Clock::now();
  }
}

void Conversation::take(Channel::Message message, const TakeFrame& take) {
  if (message.contains("changed")) {
    if (!show_at_) show_at_ = Clock::now() + kBetweenShows;
  } else if (message.contains("shown")) {
    take(std::move(message.at("shown")), false);
  } else if (!message.contains("missing")) {
    take(std::move(message.at(message.contains("idle") ? "idle" : "frame")), true);
  }
}

void Conversation::send(const std::string& word) {
  supervisor_.send(word);
  waiting_since_ = Clock::now();
}

void Conversation::keepTime(Time now, std::optional<int> seconds_left) {
  if (show_at_ && *show_at_ <= now) {
    supervisor_.show();
    show_at_.reset();
  }
  if (seconds_left == 0 && isFree()) send("timeout");
}

std::optional<Time> Conversation::busySince(Time now) const {
  return waiting_since_ && now - *waiting_since_ >= kBusyAfter ? waiting_since_ : std::nullopt;
}

milliseconds Conversation::untilDue(Time now, bool counts_down) const {
  if (show_at_) {
    return std::clamp(std::chrono::ceil<milliseconds>(*show_at_ - now), milliseconds(0), kTick);
  }
  return waiting_since_ || counts_down ? kTick : kNever;
}

}  // namespace desk
