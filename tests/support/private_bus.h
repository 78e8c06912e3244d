// A private D-Bus session for tests that talk to real services: its own
// dbus-daemon, programs started on it (python3-dbusmock mocks, the program
// under test) and a GDBus connection of the test's own for calling them.
// Everything started is ended (SIGTERM, then SIGKILL) when the bus goes.
// A missing dbus-daemon or a mock that never takes its name fails the
// test: nothing is skipped.
#pragma once

#include <gio/gio.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace zv::testing {

// Polls `done` every 20 ms for up to `seconds`; true when it held.
inline bool waitUntil(const std::function<bool()>& done, double seconds) {
  const auto end = std::chrono::steady_clock::now() +
                   std::chrono::milliseconds(static_cast<int>(seconds * 1000));
  while (true) {
    if (done()) return true;
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
}

class PrivateBus {
 public:
  // Starts dbus-daemon; check ok() (ASSERT) before use.
  PrivateBus() {
    static int count = 0;
    const std::string out = "/tmp/zvbus." + std::to_string(getpid()) + "." +
                            std::to_string(count++);
    // Beside its address it may complain that an unprivileged user cannot
    // raise the fd limit: the address is the line naming its socket.
    spawn(
        {"/usr/bin/dbus-daemon", "--session", "--nofork", "--print-address=1"},
        out);
    waitUntil(
        [&] {
          FILE* in = fopen(out.c_str(), "r");
          char line[1024];
          while (in && address_.empty() && fgets(line, sizeof line, in))
            if (strncmp(line, "unix:", 5) == 0 && strchr(line, '\n'))
              address_.assign(line, strcspn(line, "\n"));
          if (in) fclose(in);
          return !address_.empty();
        },
        10);
    std::remove(out.c_str());
    if (address_.empty()) return;
    GError* error = nullptr;
    connection_ = g_dbus_connection_new_for_address_sync(
        address_.c_str(),
        static_cast<GDBusConnectionFlags>(
            G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
            G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, &error);
    if (error) g_error_free(error);
  }
  ~PrivateBus() {
    if (connection_) g_object_unref(connection_);
    // Newest first: the programs before their bus.
    const std::vector<pid_t> left(children_.rbegin(), children_.rend());
    for (pid_t pid : left) end(pid);
  }
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  bool ok() const { return connection_ != nullptr; }
  const std::string& address() const { return address_; }
  GDBusConnection* connection() const { return connection_; }

  // Starts `argv` on this bus (as its session bus) with standard output
  // and error into `output` ("" keeps the test's); returns its pid.
  pid_t spawn(const std::vector<std::string>& argv,
              const std::string& output = "") {
    pid_t pid = fork();
    if (pid == 0) {
      prctl(PR_SET_PDEATHSIG, SIGTERM);
      setenv("DBUS_SESSION_BUS_ADDRESS", address_.c_str(), 1);
      unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
      if (!output.empty()) {
        FILE* f = fopen(output.c_str(), "w");
        if (f) {
          dup2(fileno(f), STDOUT_FILENO);
          dup2(fileno(f), STDERR_FILENO);
        }
      }
      std::vector<char*> args;
      for (const auto& a : argv) args.push_back(const_cast<char*>(a.c_str()));
      args.push_back(nullptr);
      execv(args[0], args.data());
      _exit(127);
    }
    children_.push_back(pid);
    return pid;
  }

  // Whether `name` has an owner on the bus now.
  bool hasOwner(const std::string& name) {
    GVariant* r = call("org.freedesktop.DBus", "/org/freedesktop/DBus",
                       "org.freedesktop.DBus", "NameHasOwner",
                       g_variant_new("(s)", name.c_str()));
    if (!r) return false;
    gboolean has = FALSE;
    g_variant_get(r, "(b)", &has);
    g_variant_unref(r);
    return has;
  }

  // A method call; the reply (to unref), or null with `error` set.
  GVariant* call(const std::string& name, const std::string& path,
                 const std::string& interface, const std::string& method,
                 GVariant* args, std::string* error = nullptr) {
    GError* e = nullptr;
    GVariant* r = g_dbus_connection_call_sync(
        connection_, name.c_str(), path.c_str(), interface.c_str(),
        method.c_str(), args, nullptr, G_DBUS_CALL_FLAGS_NONE, 5000, nullptr,
        &e);
    if (e) {
      if (error) *error = e->message;
      g_error_free(e);
    }
    return r;
  }

  // Ends a program started here and reaps it; its exit status, or -1
  // when a signal ended it (SIGKILL after 5 s without exiting).
  int end(pid_t pid, int sig = SIGTERM) {
    std::erase(children_, pid);
    kill(pid, sig);
    int status = 0;
    for (int i = 0; i < 250; ++i) {
      const pid_t r = waitpid(pid, &status, WNOHANG);
      if (r == pid) return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
      if (r < 0) return -1;
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    kill(pid, SIGKILL);
    waitpid(pid, &status, 0);
    return -1;
  }

  // Whether a program started here is still running.
  static bool running(pid_t pid) {
    // (A program that has exited stays a zombie until end() reaps it.)
    siginfo_t info{};
    if (waitid(P_PID, pid, &info, WEXITED | WNOHANG | WNOWAIT) != 0)
      return false;
    return info.si_pid == 0;
  }

 private:
  std::string address_;
  GDBusConnection* connection_ = nullptr;
  std::vector<pid_t> children_;
};

}  // namespace zv::testing
