/// Programs on the same computer that crowd the HTTP endpoint, or want to use it without its token.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>

#include "Core/Secret.h"
#include "hostile/AttackTable.h"
#include "hostile/ProcessFacts.h"
#include "support/ChildProgram.h"
#include "support/Files.h"
#include "support/LoopbackClient.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {

namespace {

using std::chrono::milliseconds;

constexpr std::size_t mostConnections = 64;
constexpr const char* token = "kQ3-token-of-this-test-_9";
constexpr const char* ping = R"({"jsonrpc":"2.0","id":1,"method":"ping"})";
constexpr const char* pong = R"({"id":1,"jsonrpc":"2.0","result":{}})";

std::string request(const std::string& given, std::string_view body = ping) {
  return "POST /mcp HTTP/1.1\r\nHost: 127.0.0.1\r\n" +
         (given.empty() ? "" : "Authorization: Bearer " + given + "\r\n") +
         "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + std::string(body);
}

/// The endpoint as a program of its own, with a pipe as its input.
class Endpoint {
 public:
  Endpoint()
      : program_({"sh", "-c", "exec $0 $1 <>" + pipe() + " 2>" + complaints(), TARNWELL_HTTP_PROGRAM, token},
                 {"PATH=/usr/bin:/bin", "HOME=" + directory_.path().string()}) {
    const std::string url = program_.readLine();
    const std::size_t colon = url.rfind(':');
    if (colon == url.npos) {
      throw std::runtime_error("the endpoint does not start, which this test needs");
    }
    port_ = static_cast<std::uint16_t>(std::stoi(url.substr(colon + 1)));
  }

  LoopbackClient connect() const { return LoopbackClient(port_); }
  std::string answerTo(std::string_view bytes) const {
    LoopbackClient client = connect();
    client.send(bytes);
    return client.readAll();
  }
  long memory(const std::string& name) const { return processFigure(program_.processID(), name); }
  long descriptors() const {
    const std::filesystem::directory_iterator all(processDirectory(program_.processID()) / "fd");
    return std::distance(begin(all), end(all));
  }

  /// It serves who knows the token, and has complained of nothing.
  void expectUnharmed() const {
    EXPECT_TRUE(answerTo(request(token)).ends_with(pong));
    EXPECT_EQ(fileContents(complaints()), "");
  }

 private:
  std::string pipe() const {
    const std::string path = (directory_ / "input").string();
    ::mkfifo(path.c_str(), 0600);
    return path;
  }
  std::string complaints() const { return (directory_ / "complaints").string(); }

  TemporaryDirectory directory_;
  ChildProgram program_;
  std::uint16_t port_ = 0;
};

std::vector<LoopbackClient> crowd(const Endpoint& endpoint, std::size_t count) {
  std::vector<LoopbackClient> clients;
  while (clients.size() < count) {
    clients.push_back(endpoint.connect());
  }
  return clients;
}

void idleCrowd() {
  const Endpoint endpoint;
  endpoint.expectUnharmed();
  const long descriptorsBefore = endpoint.descriptors();
  const long memoryBefore = endpoint.memory("VmRSS");
  std::vector<LoopbackClient> silent = crowd(endpoint, 500);
  LoopbackClient next = endpoint.connect();
  next.send(request(token));
  EXPECT_FALSE(next.hasInput(milliseconds(300)));
  EXPECT_LE(endpoint.descriptors(), descriptorsBefore + static_cast<long>(mostConnections));
  if (!isSanitized) {
    EXPECT_LT(endpoint.memory("VmRSS") - memoryBefore, 4096) << "kB";
  }
  for (LoopbackClient& client : silent) {
    client.close();
  }
  EXPECT_TRUE(next.readAll().ends_with(pong));
  endpoint.expectUnharmed();
}

void bodiesWithoutTheToken() {
  const Endpoint endpoint;
  endpoint.expectUnharmed();
  const long before = endpoint.memory("VmHWM");
  const std::string large(4'194'304, 'x');
  for (const char* given : {"", "another"}) {
    std::vector<LoopbackClient> clients = crowd(endpoint, mostConnections);
    for (LoopbackClient& client : clients) {
      client.send(request(given, large));
      EXPECT_TRUE(client.readExactly(12) == "HTTP/1.1 401");
    }
  }
  if (!isSanitized) {
    EXPECT_LT(endpoint.memory("VmHWM") - before, 8192) << "kB";
  }
  endpoint.expectUnharmed();
}

void guessing() {
  const Endpoint endpoint;
  std::string guess = token;
  for (int round = 0; round < 2000; ++round) {
    char& changed = guess[static_cast<std::size_t>(round) % guess.size()];
    changed = changed == '~' ? '!' : static_cast<char>(changed + 1);
    ASSERT_TRUE(endpoint.answerTo(request(guess)).starts_with("HTTP/1.1 401 ")) << round;
  }
  endpoint.expectUnharmed();
}

}  // namespace

std::vector<Attack> endpointAttacks() {
  return {
      {"crowdOfSilentConnections", "500 connections that send nothing",
       "64 are open, the next ones wait in the system; less than 4 MiB more memory; who waits is served as "
       "soon as one ends",
       idleCrowd},
      {"bodiesWithoutTheToken", "64 bodies of 4 MiB at a time, without the token or with a wrong one",
       "refused by their headers; the bodies take less than 8 MiB together", bodiesWithoutTheToken},
      {"guessingTheToken", "2,000 guesses of the token that differ in one letter or a few",
       "each is refused, and the token is served", guessing},
  };
}

}  // namespace tarnwell::test
