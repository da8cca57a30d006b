#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "desk/protocol/Channel.h"

namespace desk {
namespace {

std::array<base::Descriptor, 2> socketPair() {
  std::array<int, 2> ends{};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) abort();
  return {base::Descriptor(ends[0]), base::Descriptor(ends[1])};
}

struct ChannelTest : testing::Test {
  /// Puts bytes into the socket as they stand.
  void put(const std::string& bytes) {
    ASSERT_EQ(write(peer.number(), bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }

  std::array<base::Descriptor, 2> ends = socketPair();
  Channel channel{std::move(ends[0])};
  base::Descriptor peer = std::move(ends[1]);
};

/// Returns the line, "gone" for none.
std::string text(const std::optional<std::string>& line) {
  return line.value_or("gone");
}

TEST_F(ChannelTest, LinesArriveInOrderAsTheyWereSent) {
  Channel other(std::move(peer));
  const std::string lines[] = {"ok", "", "a  b\tc"};
  for (const std::string& line : lines) channel.send(line);
  for (const std::string& line : lines) EXPECT_EQ(text(other.receive()), line);
  other.send("exit");
  EXPECT_EQ(text(channel.receive()), "exit");
}

TEST_F(ChannelTest, SeveralLinesOfOneReadAreAllThere) {
  put("1\n2\n3\n");
  EXPECT_EQ(text(channel.receiveRead()), "gone");
  EXPECT_EQ(text(channel.receive()), "1");
  EXPECT_EQ(text(channel.receiveRead()), "2");
  EXPECT_EQ(text(channel.receiveRead()), "3");
  EXPECT_EQ(text(channel.receiveRead()), "gone");
}

TEST_F(ChannelTest, LineInPiecesIsPutTogether) {
  const std::string line = "1\n2\n";
  for (std::size_t cut = 0; cut <= line.size(); ++cut) {
    put(line.substr(0, cut));
    std::thread rest([&] { put(line.substr(cut)); });
    EXPECT_EQ(text(channel.receive()), "1") << cut;
    EXPECT_EQ(text(channel.receive()), "2") << cut;
    rest.join();
  }
}

TEST_F(ChannelTest, LineLargerThanAnyBufferArrivesWhole) {
  Channel other(std::move(peer));
  const std::string large(5000000, 'x');
  std::thread sender([&] {
    channel.send(large);
    channel.send("2");
  });
  const auto received = other.receive();
  ASSERT_TRUE(received);
  EXPECT_TRUE(*received == large);
  EXPECT_EQ(text(other.receive()), "2");
  sender.join();
}

TEST_F(ChannelTest, GonePeerIsNothingToReceiveAndNoErrorToSend) {
  peer.reset();
  channel.send("ok");
  EXPECT_EQ(text(channel.receive()), "gone");
  channel.send(std::string(1000000, 'x'));
  EXPECT_EQ(text(channel.receive()), "gone");
}

TEST_F(ChannelTest, WhatCameBeforeThePeerWentIsStillReceived) {
  put("1\n2\nhalf");
  peer.reset();
  EXPECT_EQ(text(channel.receive()), "1");
  EXPECT_EQ(text(channel.receive()), "2");
  EXPECT_EQ(text(channel.receive()), "gone");
}

}  // namespace
}  // namespace desk
