#include "platform/linux/eds_address_book.h"

#include <libebook/libebook.h>

#include <algorithm>
#include <map>
#include <thread>

#include "platform/linux/vcard_contact.h"

namespace zv::platform {
namespace {

// A book is read as soon as it is open, without waiting for it to be
// online ((guint32) -1): a remote one answers from its local copy, which is
// what the phone has anyway (and a device without a network monitor never
// calls a book online).
constexpr guint32 kConnectSeconds = static_cast<guint32>(-1);

// A watch whose reads keep failing asks at most this seldom.
constexpr double kLongestRetrySeconds = 300;

std::string message(GError* error) {
  std::string out = error ? error->message : "unknown error";
  if (error) g_error_free(error);
  return out;
}

// The books of a registry with the clients connected to them, kept across
// reads so that a watch connects each book once.
class Books {
 public:
  // Every call to the server gives up when `cancel` is cancelled.
  explicit Books(GCancellable* cancel = nullptr) : cancel_(cancel) {}
  ~Books() {
    while (!books_.empty()) forget(books_.begin()->first);
    if (registry_) g_object_unref(registry_);
  }

  // Called for each new book's client (to watch it), on this thread.
  std::function<void(EBookClient*, EBookClientView**)> onConnect;

  ESourceRegistry* registry(std::string* problem) {
    if (registry_) return registry_;
    GError* error = nullptr;
    registry_ = e_source_registry_new_sync(cancel_, &error);
    if (!registry_)
      *problem = "Evolution Data Server is not reachable: " + message(error);
    return registry_;
  }

  EdsSnapshot read() {
    EdsSnapshot snap;
    ESourceRegistry* reg = registry(&snap.problem);
    if (!reg) return snap;
    snap.reachable = true;
    GList* sources =
        e_source_registry_list_enabled(reg, E_SOURCE_EXTENSION_ADDRESS_BOOK);
    for (GList* l = sources; l; l = l->next) {
      auto* source = static_cast<ESource*>(l->data);
      const std::string uid = e_source_get_uid(source);
      snap.knownBooks.insert(uid);
      EBookClient* client = clientFor(source, uid, &snap.problem);
      if (!client) continue;
      GSList* contacts = nullptr;
      GError* error = nullptr;
      EBookQuery* all = e_book_query_any_field_contains("");
      char* sexp = e_book_query_to_string(all);
      e_book_query_unref(all);
      const bool ok = e_book_client_get_contacts_sync(client, sexp, &contacts,
                                                      cancel_, &error);
      g_free(sexp);
      if (!ok) {
        if (snap.problem.empty())
          snap.problem = "address book " + uid + ": " + message(error);
        else if (error)
          g_error_free(error);
        // A book whose backend died answers nothing through this client
        // again: the next read connects afresh.
        forget(uid);
        continue;
      }
      snap.readBooks.insert(uid);
      const std::string prefix = std::string(kEdsPrefix) + uid + "/";
      for (GSList* c = contacts; c; c = c->next)
        if (auto contact = externalContact(E_CONTACT(c->data), prefix))
          snap.contacts.push_back(std::move(*contact));
      g_slist_free_full(contacts, g_object_unref);
    }
    g_list_free_full(sources, g_object_unref);
    return snap;
  }

 private:
  struct Book {
    EBookClient* client = nullptr;
    EBookClientView* view = nullptr;
  };

  void forget(const std::string& uid) {
    auto it = books_.find(uid);
    if (it == books_.end()) return;
    if (it->second.view) {
      e_book_client_view_stop(it->second.view, nullptr);
      g_object_unref(it->second.view);
    }
    g_object_unref(it->second.client);
    books_.erase(it);
  }

  EBookClient* clientFor(ESource* source, const std::string& uid,
                         std::string* problem) {
    auto it = books_.find(uid);
    if (it != books_.end()) return it->second.client;
    GError* error = nullptr;
    EClient* client =
        e_book_client_connect_sync(source, kConnectSeconds, cancel_, &error);
    if (!client) {
      if (problem->empty())
        *problem = "address book " + uid + ": " + message(error);
      else if (error)
        g_error_free(error);
      return nullptr;
    }
    Book& book = books_[uid];
    book.client = E_BOOK_CLIENT(client);
    if (onConnect) onConnect(book.client, &book.view);
    return book.client;
  }

  GCancellable* cancel_;
  ESourceRegistry* registry_ = nullptr;
  std::map<std::string, Book> books_;
};

}  // namespace

bool EdsSnapshot::gone(const std::string& externalId) const {
  if (!reachable || !externalId.starts_with(kEdsPrefix)) return false;
  const std::string rest = externalId.substr(sizeof kEdsPrefix - 1);
  const std::string book = rest.substr(0, rest.find('/'));
  return readBooks.contains(book) || !knownBooks.contains(book);
}

EdsSnapshot readEdsContacts() {
  Books books;
  return books.read();
}

struct EdsWatch::Impl {
  double settle;
  double first_retry;
  std::function<void(const EdsSnapshot&)> on_snapshot;
  GMainContext* context = g_main_context_new();
  GMainLoop* loop = g_main_loop_new(context, FALSE);
  GCancellable* cancel = g_cancellable_new();
  guint timer = 0;
  guint retry_timer = 0;
  double retry_delay = 0;
  bool registry_watched = false;
  std::thread thread;

  ~Impl() {
    g_object_unref(cancel);
    g_main_loop_unref(loop);
    g_main_context_unref(context);
  }

  // Runs `then` once after `seconds`; `id` holds the source while pending,
  // and a new call replaces a pending one.
  void after(double seconds, guint& id, void (*then)(Impl*)) {
    if (id) g_source_destroy(g_main_context_find_source_by_id(context, id));
    struct Pending {
      Impl* self;
      guint* id;
      void (*then)(Impl*);
    };
    GSource* source = g_timeout_source_new(static_cast<guint>(seconds * 1000));
    g_source_set_callback(
        source,
        [](gpointer data) -> gboolean {
          auto* pending = static_cast<Pending*>(data);
          *pending->id = 0;
          pending->then(pending->self);
          return G_SOURCE_REMOVE;
        },
        new Pending{this, &id, then},
        [](gpointer data) { delete static_cast<Pending*>(data); });
    id = g_source_attach(source, context);
    g_source_unref(source);
  }

  // A snapshot `settle` seconds after the last change of a burst.
  void schedule() {
    after(settle, timer, [](Impl* self) { self->snapshot(); });
  }

  Books* books = nullptr;
  void snapshot() {
    watchRegistry();
    EdsSnapshot snap = books->read();
    if (g_cancellable_is_cancelled(cancel)) return;
    on_snapshot(snap);
    // A server not reachable yet (started after us, or restarting), or a
    // book that did not open or answer, sends no change signal when it
    // comes back: ask again, less and less often, until a read is whole.
    if (snap.problem.empty()) {
      retry_delay = first_retry;
      return;
    }
    after(retry_delay, retry_timer, [](Impl* self) { self->snapshot(); });
    retry_delay = std::min(retry_delay * 2, kLongestRetrySeconds);
  }

  // Follows books being added, removed, enabled or disabled, once the
  // registry answers.
  void watchRegistry() {
    if (registry_watched) return;
    std::string problem;
    ESourceRegistry* reg = books->registry(&problem);
    if (!reg) return;
    registry_watched = true;
    for (const char* signal : {"source-added", "source-removed",
                               "source-enabled", "source-disabled"})
      g_signal_connect(reg, signal, G_CALLBACK(sourceChanged), this);
  }

  static void changed(gpointer, gpointer, gpointer self) {
    static_cast<Impl*>(self)->schedule();
  }
  static void sourceChanged(ESourceRegistry*, ESource*, gpointer self) {
    static_cast<Impl*>(self)->schedule();
  }
  static void backendDied(EClient*, gpointer self) {
    static_cast<Impl*>(self)->schedule();
  }

  void run() {
    g_main_context_push_thread_default(context);
    {
      Books owned(cancel);
      books = &owned;
      owned.onConnect = [this](EBookClient* client, EBookClientView** view) {
        // The failed read that follows a dead backend forgets the client,
        // and the retries connect again.
        g_signal_connect(client, "backend-died", G_CALLBACK(backendDied), this);
        EBookQuery* all = e_book_query_any_field_contains("");
        char* sexp = e_book_query_to_string(all);
        e_book_query_unref(all);
        if (e_book_client_get_view_sync(client, sexp, view, cancel, nullptr)) {
          for (const char* signal :
               {"objects-added", "objects-modified", "objects-removed"})
            g_signal_connect(*view, signal, G_CALLBACK(changed), this);
          e_book_client_view_start(*view, nullptr);
        }
        g_free(sexp);
      };
      snapshot();
      if (!g_cancellable_is_cancelled(cancel)) g_main_loop_run(loop);
      for (guint id : {timer, retry_timer})
        if (id) g_source_destroy(g_main_context_find_source_by_id(context, id));
      books = nullptr;
    }
    g_main_context_pop_thread_default(context);
  }
};

EdsWatch::EdsWatch(double settle,
                   std::function<void(const EdsSnapshot&)> onSnapshot,
                   double firstRetry)
    : impl_(std::make_unique<Impl>()) {
  impl_->settle = settle;
  impl_->first_retry = impl_->retry_delay = firstRetry;
  impl_->on_snapshot = std::move(onSnapshot);
  impl_->thread = std::thread([impl = impl_.get()] { impl->run(); });
}

EdsWatch::~EdsWatch() {
  // A call to the server in progress gives up at once.
  g_cancellable_cancel(impl_->cancel);
  // Quit from inside the watch's own loop (a source it runs once it gets to
  // it), so that a quit before the loop started is not lost.
  GSource* quit = g_idle_source_new();
  g_source_set_callback(
      quit,
      [](gpointer loop) -> gboolean {
        g_main_loop_quit(static_cast<GMainLoop*>(loop));
        return G_SOURCE_REMOVE;
      },
      impl_->loop, nullptr);
  g_source_attach(quit, impl_->context);
  g_source_unref(quit);
  impl_->thread.join();
}

}  // namespace zv::platform
