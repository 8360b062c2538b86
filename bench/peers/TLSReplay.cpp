/// The floor of an IMAP session: sends recorded commands over TLS and reads the answers without parsing them.
/// For each line on its standard input it looks up the host, opens a connection, replays the whole session
/// and prints the number of bytes that arrived.
///
///   TLSReplay PORT CERTIFICATE_DIRECTORY COMMANDS
///
/// COMMANDS has one command on each line, in the order of sending. No command has a literal. An empty line
/// ends a burst: the commands before it are sent together, and the next burst waits for all their answers.

#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <openssl/ssl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

void require(bool holds, const char* what) {
  if (!holds) {
    throw std::runtime_error(what);
  }
}

struct Free {
  void operator()(SSL_CTX* context) const { SSL_CTX_free(context); }
  void operator()(SSL* stream) const { SSL_free(stream); }
};

using Context = std::unique_ptr<SSL_CTX, Free>;

Context makeContext(const char* certificates) {
  Context context(SSL_CTX_new(TLS_client_method()));
  require(SSL_CTX_set_min_proto_version(context.get(), TLS1_2_VERSION) == 1, "the version");
  require(SSL_CTX_load_verify_dir(context.get(), certificates) == 1, "the certificate directory");
  SSL_CTX_set_verify(context.get(), SSL_VERIFY_PEER, nullptr);
  return context;
}

class Session {
 public:
  Session(const char* port, const char* certificates)
      : context_(makeContext(certificates)), stream_(SSL_new(context_.get())) {
    require(SSL_set1_host(stream_.get(), "localhost") == 1, "the host name");
    require(SSL_set_tlsext_host_name(stream_.get(), "localhost") == 1, "the server name");

    addrinfo wanted{}, *found = nullptr;
    wanted.ai_family = AF_INET;
    wanted.ai_socktype = SOCK_STREAM;
    require(getaddrinfo("localhost", port, &wanted, &found) == 0, "the look-up");
    const bool isConnected = connect(socket_, found->ai_addr, found->ai_addrlen) == 0;
    freeaddrinfo(found);
    require(isConnected, "connect");
    const int on = 1;
    setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    SSL_set_fd(stream_.get(), socket_);
    require(SSL_connect(stream_.get()) == 1, "the handshake");
  }
  ~Session() { close(socket_); }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  void send(const std::string& line) {
    require(SSL_write(stream_.get(), line.data(), static_cast<int>(line.size())) > 0, "send");
  }

  /// Reads until the last line begins with the tag (or, for the greeting, with "* "). Keeps only the end of
  /// the answer, so a large answer costs only its transfer.
  std::size_t readUntil(const std::string& beginning) {
    std::string tail;
    std::size_t total = 0;
    for (;;) {
      const int count = SSL_read(stream_.get(), received_.data(), static_cast<int>(received_.size()));
      require(count > 0, "the server closed the connection");
      total += static_cast<std::size_t>(count);
      tail.append(received_.data(), static_cast<std::size_t>(count));
      if (tail.size() > longestTail) {
        tail.erase(0, tail.size() - longestTail);
      }
      if (lastLine(tail).starts_with(beginning)) {
        return total;
      }
    }
  }

 private:
  static constexpr std::size_t longestTail = 1024;

  static std::string_view lastLine(std::string_view text) {
    if (!text.ends_with("\r\n")) {
      return {};
    }
    text.remove_suffix(2);
    const std::size_t lineFeed = text.rfind('\n');
    return lineFeed == std::string_view::npos ? text : text.substr(lineFeed + 1);
  }

  Context context_;
  std::unique_ptr<SSL, Free> stream_;
  int socket_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  std::array<char, 65536> received_;
};

/// Commands that go out together, and the tag of the last.
struct Burst {
  std::string commands;
  std::string lastTag;
};

std::size_t replay(const char* port, const char* certificates, const std::vector<Burst>& bursts) {
  Session session(port, certificates);
  std::size_t bytes = session.readUntil("* ");
  for (const Burst& burst : bursts) {
    session.send(burst.commands);
    bytes += session.readUntil(burst.lastTag);
  }
  return bytes;
}

std::vector<Burst> readBursts(const char* path) {
  std::vector<Burst> bursts(1);
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    if (line.empty()) {
      bursts.emplace_back();
    } else {
      bursts.back().commands += line + "\r\n";
      bursts.back().lastTag = line.substr(0, line.find(' ') + 1);
    }
  }
  std::erase_if(bursts, [](const Burst& burst) { return burst.commands.empty(); });
  return bursts;
}

}  // namespace

int main(int count, char* arguments[]) {
  if (count != 4) {
    std::cerr << "usage: TLSReplay PORT CERTIFICATE_DIRECTORY COMMANDS\n";
    return 2;
  }
  try {
    const std::vector<Burst> bursts = readBursts(arguments[3]);
    for (std::string go; std::getline(std::cin, go);) {
      std::cout << "{\"bytes\": " << replay(arguments[1], arguments[2], bursts) << "}" << std::endl;
    }
  } catch (const std::exception& error) {
    std::cerr << "TLSReplay: failed at " << error.what() << "\n";
    return 1;
  }
}
