#include "tests/desk/DeskFixture.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <stdexcept>

namespace desk {

Word word(const std::string& text) {
  return text.empty() ? Word() : parseWord(text).value();
}

void waitForJob(Jobs& jobs) {
  constexpr int kMinute = 60000;
  std::vector<pollfd> watched = jobs.watched();
  if (poll(watched.data(), watched.size(), kMinute) == 0) {
    throw std::runtime_error("the jobs do not come to their end");
  }
  jobs.report();
}

void runToEnd(Jobs& jobs) {
  while (!jobs.idle()) waitForJob(jobs);
}

Gate::Gate() : pipe_(directory_ / "gate") {
  if (mkfifo(pipe_.c_str(), 0600) != 0) throw std::runtime_error("cannot make " + pipe_);
  end_ = base::Descriptor(::open(pipe_.c_str(), O_RDWR | O_CLOEXEC));
}

void Gate::open() const {
  if (write(end_.number(), "\n", 1) != 1) throw std::runtime_error("cannot open the gate");
}

Lines rowsOf(Layer& layer) {
  Lines texts;
  for (const Row& row : layer.rowList()->rows()) texts.push_back(row.text);
  return texts;
}

void SessionTest::press(const std::vector<std::string>& keys) {
  for (const std::string& key : keys) {
    session.top()->handleKey(key);
    settle();
  }
}

void SessionTest::settle() {
  while (session.topHasClosed()) session.removeTop();
}

host::Object SessionTest::note(const std::string& name) {
  return plain::function([this, name](host::Arguments given) {
    notes.lines.push_back(name + ": " + plain::nodeOf(plain::argument(given, 0)).str());
    return host::Object();
  });
}

}  // namespace desk
