#include "desk/frontend/Player.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <stdexcept>

namespace desk {
namespace {

using std::chrono::milliseconds;

/// From when on the GUI is said to be busy; most answers come sooner.
constexpr milliseconds kBusyAfter(150);

/// How often what a job changes is asked for.
constexpr milliseconds kBetweenRequests(50);

/// How often a count-down and the sign of being busy change.
constexpr milliseconds kTick(100);

constexpr milliseconds kNever(60000);

}  // namespace

int Player::play(Supervisor& supervisor) {
  while (!isOver(supervisor)) {
    const short input = wait(supervisor);
    if (signals_ && signals_->end() != 0) {
      supervisor.kill();
      return signals_->end();
    }
    stopIfAsked();
    if (gui_has_report_) takeReports(supervisor);
    if (is_closed_ && front_end_.isLive()) break;
    front_end_.takeInput(input);
    sendWords(supervisor);
    keepTime(supervisor);
  }
  return 0;
}

/// Waits until input, a report or a signal has come, or something is due. Returns what poll(2) says
/// of the input.
short Player::wait(const Supervisor& supervisor) {
  const bool is_free = has_opened_ && supervisor.unanswered() == 0;
  std::array<pollfd, 2> watched = {
      pollfd{.fd = supervisor.descriptor(), .events = POLLIN, .revents = 0},
      front_end_.input(is_free)};
  const milliseconds patience = untilDue(Clock::now());
  if (signals_) {
    signals_->wait(watched, patience);
  } else {
    poll(watched.data(), watched.size(), static_cast<int>(patience.count()));
  }
  gui_has_report_ = watched[0].revents != 0;
  return watched[1].revents;
}

/// Returns how long nothing is due, and nothing that is shown changes by itself.
milliseconds Player::untilDue(Time now) const {
  if (!front_end_.isLive()) return kNever;
  if (request_frame_at_) {
    return std::clamp(std::chrono::ceil<milliseconds>(*request_frame_at_ - now), milliseconds(0),
                      kTick);
  }
  return waiting_since_ || countdown_.secondsLeft(now) ? kTick : kNever;
}

void Player::stopIfAsked() {
  if (!signals_) return;
  if (signals_->takeStop()) {
    front_end_.suspend();
    signals_->stop();
    front_end_.resume();
  }
  if (signals_->takeContinued()) front_end_.resume();
}

void Player::takeReports(Supervisor& supervisor) {
  do {
    if (const auto report = supervisor.receive()) take(*report);
  } while (supervisor.hasReport());
  if (supervisor.unanswered() == 0) {
    waiting_since_.reset();
  } else if (!waiting_since_) {
    waiting_since_ = Clock::now();
  }
}

void Player::take(const Report& report) {
  if (const auto* const shown = std::get_if<FrameReport>(&report)) {
    take(*shown);
  } else if (std::holds_alternative<RowMissing>(report)) {
    front_end_.onMissingRow(last_word_);
  } else if (!request_frame_at_) {
    request_frame_at_ = Clock::now() + kBetweenRequests;
  }
}

void Player::take(const FrameReport& report) {
  const bool is_live = front_end_.isLive();
  if (!is_live && report.cause != FrameReport::Cause::word) return;
  const bool is_closed = !report.frame.top();
  if (is_live && !has_opened_ && is_closed) {
    throw std::runtime_error("the menu does not open: " + last_error_);
  }
  is_closed_ = is_closed;
  has_opened_ = true;
  countdown_.show(report.frame, Clock::now());
  front_end_.show(report.frame, report.cause != FrameReport::Cause::request);
}

/// Hands words over as long as the GUI owes no answer.
void Player::sendWords(Supervisor& supervisor) {
  if (!has_opened_ || supervisor.unanswered() > 0) return;
  if (const auto word = front_end_.nextWord()) {
    send(supervisor, *word);
  } else {
    has_no_words_ = true;
  }
}

void Player::send(Supervisor& supervisor, const Word& word) {
  last_word_ = word;
  supervisor.send(word);
  waiting_since_ = Clock::now();
}

/// Does what is due by the clock.
void Player::keepTime(Supervisor& supervisor) {
  const Time now = Clock::now();
  if (!front_end_.isLive()) return;
  if (request_frame_at_ && *request_frame_at_ <= now) {
    supervisor.requestFrame();
    request_frame_at_.reset();
  }
  const auto seconds_left = countdown_.secondsLeft(now);
  if (seconds_left == 0 && supervisor.unanswered() == 0) {
    send(supervisor, {Word::Kind::timeout, "timeout"});
  }
  const bool is_busy = waiting_since_ && now - *waiting_since_ >= kBusyAfter;
  if (has_opened_) {
    front_end_.refresh({.now = now,
                        .seconds_left = seconds_left,
                        .busy_since = is_busy ? waiting_since_ : std::nullopt});
  }
}

/// Whether a script's words have run out.
bool Player::isOver(const Supervisor& supervisor) const {
  return !front_end_.isLive() && has_no_words_ && supervisor.unanswered() == 0;
}

void Player::onEvent(const Event& event) {
  if (event.kind == Event::Kind::gui_started) {
    has_opened_ = false;
    last_error_.clear();
  }
  if (event.kind == Event::Kind::error) last_error_ = event.text;
  front_end_.onEvent(event);
}

}  // namespace desk
