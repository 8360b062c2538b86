/// The floor of an IMAP session: sends recorded commands over TLS and reads the answers without parsing them.
/// For each line on its standard input it looks up the host, opens a connection, replays the whole session
/// and prints the number of bytes that arrived.
///
///   TLSReplay PORT CERTIFICATE_DIRECTORY COMMANDS
///
/// COMMANDS has one command on each line, in the order of sending. No command has a literal.

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

/// The context that all sessions share. It keeps the authority's certificate after the first use.
Context makeContext(const char* certificates) {
  Context context(SSL_CTX_new(TLS_client_method()));
  require(SSL_CTX_set_min_proto_version(context.get(), TLS1_2_VERSION) == 1, "the version");
  require(SSL_CTX_load_verify_dir(context.get(), certificates) == 1, "the certificate directory");
  SSL_CTX_set_verify(context.get(), SSL_VERIFY_PEER, nullptr);
  return context;
}

class Session {
 public:
  Session(const char* port, SSL_CTX* context) : stream_(SSL_new(context)) {
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

  std::unique_ptr<SSL, Free> stream_;
  int socket_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  std::array<char, 65536> received_;
};

std::size_t replay(const char* port, SSL_CTX* context, const std::vector<std::string>& commands) {
  Session session(port, context);
  std::size_t bytes = session.readUntil("* ");
  for (const std::string& command : commands) {
    session.send(command);
    bytes += session.readUntil(command.substr(0, command.find(' ') + 1));
  }
  return bytes;
}

}  // namespace

int main(int count, char* arguments[]) {
  if (count != 4) {
    std::cerr << "usage: TLSReplay PORT CERTIFICATE_DIRECTORY COMMANDS\n";
    return 2;
  }
  std::vector<std::string> commands;
  std::ifstream file(arguments[3]);
  for (std::string line; std::getline(file, line);) {
    commands.push_back(line + "\r\n");
  }
  try {
    const Context context = makeContext(arguments[2]);
    for (std::string go; std::getline(std::cin, go);) {
      std::cout << "{\"bytes\": " << replay(arguments[1], context.get(), commands) << "}" << std::endl;
    }
  } catch (const std::exception& error) {
    std::cerr << "TLSReplay: failed at " << error.what() << "\n";
    return 1;
  }
}
