#pragma once

/// The part of kqueue(2) that Asio uses.

#include <stdint.h>
#include <time.h>

struct kevent {
  uintptr_t ident;
  int16_t filter;
  uint16_t flags;
  uint32_t fflags;
  intptr_t data;
  void* udata;
};

#define EVFILT_READ (-1)
#define EVFILT_WRITE (-2)

#define EV_ADD 0x0001
#define EV_DELETE 0x0002
#define EV_ONESHOT 0x0010
#define EV_CLEAR 0x0020
#define EV_OOBAND 0x2000
#define EV_ERROR 0x4000

#define EV_SET(event, identifier, filterNumber, flagBits, filterFlags, amount, pointer) \
  do {                                                                                  \
    struct kevent* filled = (event);                                                    \
    filled->ident = (uintptr_t)(identifier);                                            \
    filled->filter = (filterNumber);                                                    \
    filled->flags = (flagBits);                                                         \
    filled->fflags = (filterFlags);                                                     \
    filled->data = (amount);                                                            \
    filled->udata = (pointer);                                                          \
  } while (0)

extern "C" int kqueue(void);
extern "C" int kevent(int queue, const struct kevent* changes, int changeCount, struct kevent* events,
                      int eventCount, const struct timespec* timeout);
