#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "desk/gui/Channel.h"

namespace desk {
namespace {

std::array<native::Descriptor, 2> socketPair() {
  std::array<int, 2> ends{};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) abort();
  return {native::Descriptor(ends[0]), native::Descriptor(ends[1])};
}

struct ChannelTest : testing::Test {
  /// Puts bytes into the socket as they stand.
  void put(const std::string& bytes) {
    ASSERT_EQ(write(peer.number(), bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }

  std::array<native::Descriptor, 2> ends = socketPair();
  Channel channel{std::move(ends[0])};
  native::Descriptor peer = std::move(ends[1]);
};

/// Returns the message as text, "gone" for none.
std::string text(const std::optional<Channel::Message>& message) {
  return message ? message->dump() : "gone";
}

TEST_F(ChannelTest, MessagesArriveInOrderAsTheyWereSent) {
  Channel other(std::move(peer));
  const Channel::Message messages[] = {
      {{"word", "ok"}}, {{"frame", {{"b", 1}, {"a", {1, "x\ny", nullptr, true}}}}}, {{"log", ""}}};
  for (const Channel::Message& message : messages) channel.send(message);
  for (const Channel::Message& message : messages) EXPECT_EQ(text(other.receive()), message.dump());
  other.send({{"word", "exit"}});
  EXPECT_EQ(text(channel.receive()), R"({"word":"exit"})");
}

TEST_F(ChannelTest, SeveralMessagesOfOneReadAreAllThere) {
  put("{\"n\":1}\n{\"n\":2}\n{\"n\":3}\n");
  EXPECT_EQ(text(channel.receiveRead()), "gone");
  EXPECT_EQ(text(channel.receive()), R"({"n":1})");
  EXPECT_EQ(text(channel.receiveRead()), R"({"n":2})");
  EXPECT_EQ(text(channel.receiveRead()), R"({"n":3})");
  EXPECT_EQ(text(channel.receiveRead()), "gone");
}

TEST_F(ChannelTest, MessageInPiecesIsPutTogether) {
  const std::string line = "{\"n\":1}\n{\"n\":2}\n";
  for (std::size_t cut = 0; cut <= line.size(); ++cut) {
    put(line.substr(0, cut));
    std::thread rest([&] { put(line.substr(cut)); });
    EXPECT_EQ(text(channel.receive()), R"({"n":1})") << cut;
    EXPECT_EQ(text(channel.receive()), R"({"n":2})") << cut;
    rest.join();
  }
}

TEST_F(ChannelTest, MessageLargerThanAnyBufferArrivesWhole) {
  Channel other(std::move(peer));
  const Channel::Message large = {{"text", std::string(5000000, 'x')}};
  std::thread sender([&] {
    channel.send(large);
    channel.send({{"n", 2}});
  });
  const auto received = other.receive();
  ASSERT_TRUE(received);
  EXPECT_TRUE(*received == large);
  EXPECT_EQ(text(other.receive()), R"({"n":2})");
  sender.join();
}

TEST_F(ChannelTest, GonePeerIsNothingToReceiveAndNoErrorToSend) {
  peer.reset();
  channel.send({{"word", "ok"}});
  EXPECT_EQ(text(channel.receive()), "gone");
  channel.send({{"word", std::string(1000000, 'x')}});
  EXPECT_EQ(text(channel.receive()), "gone");
}

TEST_F(ChannelTest, WhatCameBeforeThePeerWentIsStillReceived) {
  put("{\"n\":1}\n{\"n\":2}\n{\"half");
  peer.reset();
  EXPECT_EQ(text(channel.receive()), R"({"n":1})");
  EXPECT_EQ(text(channel.receive()), R"({"n":2})");
  EXPECT_EQ(text(channel.receive()), "gone");
}

}  // namespace
}  // namespace desk
