#pragma once

/// Connects to the first of several addresses that answers, as "Happy Eyeballs" does (RFC 8305). A dead
/// address then costs a quarter of a second and not the whole wait.
///
///     tcp::socket socket(queue);
///     auto outcome = connectToFirst(queue, alternatingFamilies(endpoints), end, socket);
///     if (outcome && !*outcome) ... the socket is connected ...
///
/// Only TCP is raced. What follows, such as TLS, begins with the winner.
///
/// Threads: one at a time, and nobody else may run the queue. Another thread may stop it: the race then ends
/// at once, like one that is late. The queue must not be stopped at the beginning.

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <chrono>
#include <optional>
#include <vector>

namespace tarnwell {

/// After this time without an answer the next address is tried too (the Connection Attempt Delay of RFC 8305,
/// section 5, with the value recommended there).
inline constexpr std::chrono::milliseconds connectionAttemptDelay{250};

/// IPv6 and IPv4 in turns (RFC 8305, section 4). The family of the first address begins. Each family keeps
/// its order, and what one has more than the other comes last.
std::vector<boost::asio::ip::tcp::endpoint> alternatingFamilies(
    const std::vector<boost::asio::ip::tcp::endpoint>& endpoints);

/// Tries the addresses in this order. The next attempt starts when one has failed, or when the last one has
/// been without an answer for the delay. Earlier attempts go on meanwhile. The first that connects becomes
/// `winner`, a socket of the queue; all others are closed before this returns.
///
/// Gives the error of the attempt that failed last when all have failed, and "host not found" when there is
/// no address. Absent when an attempt was still without an answer at `end`.
std::optional<boost::system::error_code> connectToFirst(
    boost::asio::io_context& queue, const std::vector<boost::asio::ip::tcp::endpoint>& endpoints,
    std::chrono::steady_clock::time_point end, boost::asio::ip::tcp::socket& winner);

}  // namespace tarnwell
