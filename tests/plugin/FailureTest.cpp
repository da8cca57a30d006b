#include <algorithm>
#include <optional>
#include <sstream>

#include "tests/plugin/flows/Expected.h"
#include "tests/plugin/flows/Flows.h"

namespace stowline {

namespace {

using Lines = std::vector<std::string>;

Lines linesOf(const std::string& text) {
  Lines lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::string textOf(const Lines& lines, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += lines[i] + "\n";
  return text;
}

std::size_t indexOf(const Lines& lines, const std::string& line) {
  return static_cast<std::size_t>(std::ranges::find(lines, line) - lines.begin());
}

const plain::Error kErrors[] = {
    {"OSError", "[Errno 28] No space left on device", 28},
    {"TypeError", "odd"},
};

struct Failures : ::testing::TestWithParam<Flow> {
  const Flow& flow() const { return GetParam(); }

  const Caught* caughtAt(const std::string& operation) const {
    const auto found = std::ranges::find(flow().caught, operation, &Caught::operation);
    return found == flow().caught.end() ? nullptr : &*found;
  }

  /// What the module's state is when operation `index` failed; nothing when the flow does not say.
  std::optional<std::string> stateAfter(const Lines& operations, std::size_t index) const {
    std::optional<std::string> state;
    for (const StateFrom& from : flow().states) {
      if (indexOf(operations, from.operation) <= index) state = from.state;
    }
    return state;
  }

  void failAt(const Lines& operations, std::size_t index, const plain::Error& error) const {
    Receiver receiver;
    const Prepared run = flow().prepare(receiver);
    receiver.record.take();
    receiver.journal.failAt(index, error);
    const Caught* caught = caughtAt(operations[index]);
    try {
      run.go();
      EXPECT_TRUE(caught) << "the error went no further";
    } catch (const plain::Error& raised) {
      EXPECT_FALSE(caught) << "the error went on";
      EXPECT_EQ(raised.object().handle(), error.object().handle());
    }
    EXPECT_EQ(receiver.record.take(), textOf(operations, index + 1) + (caught ? caught->then : ""));
    const auto state = stateAfter(operations, index);
    if (state) {
      EXPECT_EQ(run.state(), *state);
    }
  }
};

TEST_P(Failures, NoneLetsTheFlowRunToItsEnd) {
  Receiver receiver;
  const Prepared run = flow().prepare(receiver);
  receiver.record.take();
  run.go();
  EXPECT_EQ(receiver.record.take(), flow().operations);
  if (const auto state = flow().endState()) {
    EXPECT_EQ(run.state(), *state);
  }
}

TEST_P(Failures, OfEveryOperationEndWhereTheyShould) {
  const Lines operations = linesOf(flow().operations);
  for (std::size_t index = 0; index < operations.size(); ++index) {
    for (const plain::Error& error : kErrors) {
      SCOPED_TRACE(error.type() + " at " + operations[index]);
      failAt(operations, index, error);
    }
  }
}

/// The tables of the flows name operations by their lines; a line that is not in the flow would
/// check nothing.
TEST_P(Failures, AreTabledByOperationsOfTheFlow) {
  const Lines operations = linesOf(flow().operations);
  for (const Caught& caught : flow().caught) {
    EXPECT_EQ(std::ranges::count(operations, caught.operation), 1) << caught.operation;
  }
  for (const StateFrom& from : flow().states) {
    EXPECT_GE(std::ranges::count(operations, from.operation), 1) << from.operation;
  }
}

INSTANTIATE_TEST_SUITE_P(Flows, Failures, ::testing::ValuesIn(allFlows()),
                         [](const auto& parameter) { return parameter.param.name; });

}  // namespace

}  // namespace stowline
