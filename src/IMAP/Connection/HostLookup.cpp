#include "IMAP/Connection/HostLookup.h"

#include <boost/asio/io_context.hpp>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

namespace tarnwell {

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;

/// What both threads own.
struct HostLookup::Shared {
  std::mutex mutex;
  std::condition_variable arrived;
  std::optional<Answer> answer;
  bool isGivenUp = false;
};

HostLookup::HostLookup(const std::string& host, std::uint16_t port) : shared_(std::make_shared<Shared>()) {
  error_code isName;
  const auto address = asio::ip::make_address(host, isName);
  if (!isName) {
    shared_->answer = Answer{{}, {{address, port}}};
    return;
  }
  try {
    std::thread(lookUp, shared_, host, port).detach();
  } catch (const std::system_error& noThread) {
    shared_->answer = Answer{noThread.code(), {}};
  }
}

void HostLookup::lookUp(const std::shared_ptr<Shared>& shared, const std::string& host, std::uint16_t port) {
  asio::io_context context;
  tcp::resolver resolver(context);
  Answer answer;
  const auto found =
      resolver.resolve(host, std::to_string(port), tcp::resolver::numeric_service, answer.error);
  answer.endpoints.assign(found.begin(), found.end());
  const std::lock_guard lock(shared->mutex);
  shared->answer = std::move(answer);
  shared->arrived.notify_one();
}

std::optional<HostLookup::Answer> HostLookup::await(std::chrono::steady_clock::time_point end,
                                                    const Cancellation& cancellation) {
  const Cancellation::Waker giveUp(cancellation, [&] {
    const std::lock_guard lock(shared_->mutex);
    shared_->isGivenUp = true;
    shared_->arrived.notify_one();
  });
  cancellation.throwIfCancelled();
  std::unique_lock lock(shared_->mutex);
  shared_->arrived.wait_until(lock, end, [&] { return shared_->answer || shared_->isGivenUp; });
  if (shared_->isGivenUp) {
    throw Cancelled();
  }
  return shared_->answer;
}

}  // namespace tarnwell
