#include "desk/supervisor/GuiStart.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "base/Process.h"
#include "desk/protocol/Json.h"

namespace desk {

void executeGui(const std::vector<std::string>& arguments, Channel channel,
                const std::vector<int>& descriptors) {
  const std::vector<char*> words = base::argumentsOf(arguments);
  const int end = kFirstDescriptor + static_cast<int>(descriptors.size());
  std::vector<int> out_of_the_way = descriptors;
  for (int& each : out_of_the_way) each = fcntl(each, F_DUPFD, end);
  dup2(channel.descriptor(), STDIN_FILENO);
  int number = kFirstDescriptor;
  for (const int each : out_of_the_way) dup2(each, number++);
  // The front end's viewers have connections, which would stay open with this process.
  close_range(static_cast<unsigned>(end), ~0U, 0);
  execv("/proc/self/exe", words.data());
  const std::string reason = std::strerror(errno);
  Channel(base::Descriptor(STDIN_FILENO))
      .send(ReportWriter().jsonOf(Fatal{"cannot execute the GUI process: " + reason}));
  _exit(EXIT_FAILURE);
}

}  // namespace desk
