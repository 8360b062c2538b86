#pragma once

/// libsecret, loaded when the first secret is asked for. With GLib, which comes along, it would be more than
/// half of the program's start-up and a quarter of its memory, and a client may talk to it for long without
/// opening a mailbox. Linux only; included by source files alone, since it brings the headers of both along.
///
/// Within the namespace the names below mean pointers that hide the functions of the same name, so that calls
/// and the libraries' macros read as always. A function that is used and not listed does not link.
///
/// Threads: after `loadSecretServiceLibrary` has returned true, any.

#include <gio/gio.h>
#include <libsecret/secret.h>

#define TARNWELL_SECRET_SERVICE_FUNCTIONS(EACH)  \
  EACH(g_async_initable_get_type)                \
  EACH(g_async_initable_new_async)               \
  EACH(g_async_initable_new_finish)              \
  EACH(g_async_result_get_source_object)         \
  EACH(g_cancellable_cancel)                     \
  EACH(g_cancellable_new)                        \
  EACH(g_dbus_address_escape_value)              \
  EACH(g_dbus_connection_new_for_address)        \
  EACH(g_dbus_connection_new_for_address_finish) \
  EACH(g_error_free)                             \
  EACH(g_free)                                   \
  EACH(g_hash_table_contains)                    \
  EACH(g_hash_table_insert)                      \
  EACH(g_hash_table_new_full)                    \
  EACH(g_hash_table_unref)                       \
  EACH(g_list_free)                              \
  EACH(g_log_writer_default_set_use_stderr)      \
  EACH(g_main_context_iteration)                 \
  EACH(g_main_context_new)                       \
  EACH(g_main_context_pop_thread_default)        \
  EACH(g_main_context_push_thread_default)       \
  EACH(g_main_context_unref)                     \
  EACH(g_object_ref)                             \
  EACH(g_object_set)                             \
  EACH(g_object_unref)                           \
  EACH(g_printerr)                               \
  EACH(g_quark_to_string)                        \
  EACH(g_set_print_handler)                      \
  EACH(g_source_attach)                          \
  EACH(g_source_destroy)                         \
  EACH(g_source_set_callback)                    \
  EACH(g_source_unref)                           \
  EACH(g_str_equal)                              \
  EACH(g_str_hash)                               \
  EACH(g_strdup)                                 \
  EACH(g_task_get_type)                          \
  EACH(g_task_new)                               \
  EACH(g_task_propagate_pointer)                 \
  EACH(g_task_return_new_error)                  \
  EACH(g_timeout_source_new)                     \
  EACH(g_type_check_class_cast)                  \
  EACH(g_type_check_instance_cast)               \
  EACH(g_type_class_peek)                        \
  EACH(g_type_register_static_simple)            \
  EACH(g_utf8_validate)                          \
  EACH(secret_collection_for_alias)              \
  EACH(secret_collection_for_alias_finish)       \
  EACH(secret_collection_get_locked)             \
  EACH(secret_error_get_quark)                   \
  EACH(secret_item_create)                       \
  EACH(secret_item_create_finish)                \
  EACH(secret_item_delete)                       \
  EACH(secret_item_delete_finish)                \
  EACH(secret_item_get_attributes)               \
  EACH(secret_item_get_locked)                   \
  EACH(secret_item_get_modified)                 \
  EACH(secret_item_get_secret)                   \
  EACH(secret_item_get_type)                     \
  EACH(secret_item_load_secret)                  \
  EACH(secret_item_load_secret_finish)           \
  EACH(secret_service_get_type)                  \
  EACH(secret_service_search)                    \
  EACH(secret_service_search_finish)             \
  EACH(secret_value_get)                         \
  EACH(secret_value_new)                         \
  EACH(secret_value_unref)

namespace tarnwell {

// NOLINTNEXTLINE(bugprone-macro-parentheses): a name that is declared stands in none.
#define TARNWELL_DECLARE_POINTER(NAME) inline decltype(&::NAME) NAME = nullptr;
TARNWELL_SECRET_SERVICE_FUNCTIONS(TARNWELL_DECLARE_POINTER)
#undef TARNWELL_DECLARE_POINTER

/// Loads the library and sets the pointers, once; it stays until the process ends. False when it is not
/// installed or lacks one of the functions. None of them may be called before this has returned true.
bool loadSecretServiceLibrary();

}  // namespace tarnwell
