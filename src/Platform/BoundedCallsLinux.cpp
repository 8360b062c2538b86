#include "Platform/BoundedCalls.h"

#include "Platform/SecretItems.h"
#include "Platform/SecretServiceStatus.h"

namespace tarnwell {

void throwIfFailed(GError* error) {
  if (error == nullptr) {
    return;
  }
  std::int32_t status = secretServiceStatus(g_quark_to_string(error->domain), error->code);
  g_error_free(error);
  throw SecretServiceError(status);
}

BoundedCalls::BoundedCalls(std::chrono::milliseconds bound, std::chrono::milliseconds grace)
    : context_(g_main_context_new()), cancellable_(g_cancellable_new()) {
  g_main_context_push_thread_default(context_.get());
  auto cancel = [](gpointer cancellable) -> gboolean {
    g_cancellable_cancel(static_cast<GCancellable*>(cancellable));
    return G_SOURCE_REMOVE;
  };
  auto abandon = [](gpointer isAbandoned) -> gboolean {
    *static_cast<bool*>(isAbandoned) = true;
    return G_SOURCE_REMOVE;
  };
  cancelTimer_ = startTimer(bound, cancel, cancellable_.get());
  abandonTimer_ = startTimer(bound + grace, abandon, &isAbandoned_);
}

BoundedCalls::~BoundedCalls() {
  // What the released objects still had to tidy up waits in the queue; it must not be lost with it.
  while (!isAbandoned_ && g_main_context_iteration(context_.get(), FALSE)) {
  }
  g_main_context_pop_thread_default(context_.get());
}

void BoundedCalls::TimerRelease::operator()(GSource* timer) const {
  g_source_destroy(timer);
  g_source_unref(timer);
}

BoundedCalls::Timer BoundedCalls::startTimer(std::chrono::milliseconds delay, GSourceFunc action,
                                             gpointer data) {
  Timer timer(g_timeout_source_new(static_cast<guint>(delay.count())));
  g_source_set_callback(timer.get(), action, data, nullptr);
  g_source_attach(timer.get(), context_.get());
  return timer;
}

void BoundedCalls::onReady(GObject* /*source*/, GAsyncResult* result, gpointer data) {
  std::unique_ptr<std::shared_ptr<Pending>> pending(static_cast<std::shared_ptr<Pending>*>(data));
  (*pending)->result.reset(static_cast<GAsyncResult*>(g_object_ref(result)));
}

void BoundedCalls::waitFor(const Pending& pending) {
  while (!pending.result && !isAbandoned_) {
    g_main_context_iteration(context_.get(), TRUE);
  }
  if (!pending.result) {
    throw SecretServiceError(SecretStatus::notAvailable);
  }
}

}  // namespace tarnwell
