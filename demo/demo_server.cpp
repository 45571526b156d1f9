// The web server of the demonstration form: the page, the picture, and one route per button.
#include "demo/demo_server.hpp"

#include <httplib.h>
#include <pthread.h>

#include <atomic>
#include <charconv>
#include <chrono>
#include <csignal>
#include <iostream>
#include <mutex>
#include <thread>

#include "demo/demo_form.hpp"
#include "demo/demo_page.hpp"

namespace quorvel::demo {

namespace {

using nlohmann::json;

std::string JsonText(const json& value) {
  return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

int ShownPrints(const httplib::Request& req) {
  const std::string text = req.get_param_value("shown");
  int shown = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), shown);
  return error == std::errc() && end == text.data() + text.size() && shown > 0 ? shown : 0;
}

// The component runs on one thread at a time (the profile and the picture have no locks of
// their own), so the server's worker threads take turns through one lock.
void AddRoutes(httplib::Server& server, DemoForm& form, std::mutex& mutex) {
  server.Get("/", [](const httplib::Request&, httplib::Response& res) {
    res.set_content(DemoPage(), "text/html; charset=utf-8");
  });
  server.Get("/preview.svg", [&](const httplib::Request&, httplib::Response& res) {
    std::lock_guard<std::mutex> lock(mutex);
    res.set_header("Cache-Control", "no-store");
    res.set_content(form.PictureSvg(), "image/svg+xml");
  });
  server.Get("/preview.json", [&](const httplib::Request&, httplib::Response& res) {
    std::lock_guard<std::mutex> lock(mutex);
    res.set_header("Cache-Control", "no-store");
    res.set_content(JsonText(form.State()), "application/json");
  });
  server.Get(R"(/print/(\d{1,9})\.svg)", [&](const httplib::Request& req, httplib::Response& res) {
    std::lock_guard<std::mutex> lock(mutex);
    const int print = std::stoi(req.matches[1]);
    if (print < 1 || print > form.Prints()) {
      res.status = 404;
      return;
    }
    res.set_header("Cache-Control", "no-store");
    res.set_content(form.PrintSvg(print), "image/svg+xml");
  });
  // The answer carries the texts of the prints after the `shown` ones the page already has.
  server.Post(R"(/press/(Command[1-8]))", [&](const httplib::Request& req, httplib::Response& res) {
    std::lock_guard<std::mutex> lock(mutex);
    const PressResult result = form.Press(req.matches[1]);
    json state = form.State(ShownPrints(req) + 1);
    state["ok"] = result.ok;
    state["message"] = result.message;
    state["cleared"] = result.cleared;
    res.set_content(JsonText(state), "application/json");
  });
}

// Every request is small and short: a slow or oversized client is cut off.
void BoundRequests(httplib::Server& server) {
  server.set_read_timeout(5);
  server.set_write_timeout(5);
  server.set_keep_alive_timeout(5);
  server.set_keep_alive_max_count(100);
  server.set_payload_max_length(4096);
  // Address reuse only: the library's default port sharing would let a second server take the
  // same port silently and split the requests between two pictures.
  server.set_socket_options([](socket_t sock) {
    int yes = 1;
    setsockopt(sock, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
  });
}

// Stops the server on SIGINT or SIGTERM. The signals are blocked in every thread and taken by
// one waiting thread, so that stopping runs outside a signal handler.
class StopOnSignal {
 public:
  explicit StopOnSignal(httplib::Server& server) {
    sigemptyset(&signals_);
    sigaddset(&signals_, SIGINT);
    sigaddset(&signals_, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals_, &old_mask_);  // before the server starts its threads
    waiter_ = std::thread([this, &server] {
      int signal = 0;
      sigwait(&signals_, &signal);
      // A signal that comes while the server is still starting waits for it to run.
      while (!done_ && !server.is_running()) std::this_thread::sleep_for(std::chrono::milliseconds(10));
      server.stop();
    });
  }
  ~StopOnSignal() {
    done_ = true;
    pthread_kill(waiter_.native_handle(), SIGTERM);  // wakes the waiter when no signal came
    waiter_.join();
    pthread_sigmask(SIG_SETMASK, &old_mask_, nullptr);
  }

 private:
  sigset_t signals_{};
  sigset_t old_mask_{};
  std::atomic<bool> done_{false};
  std::thread waiter_;
};

}  // namespace

int ServeDemo(int port) {
  DemoForm form;
  std::mutex mutex;
  httplib::Server server;
  AddRoutes(server, form, mutex);
  BoundRequests(server);
  StopOnSignal stop(server);
  const std::string host = "127.0.0.1";  // this machine only
  const int bound = port == 0 ? server.bind_to_any_port(host) : (server.bind_to_port(host, port) ? port : -1);
  if (bound < 0) {
    std::cerr << "quorvel: cannot listen on " << host << ":" << port << " (is the port taken?)\n";
    return 2;
  }
  std::cout << "Demonstration form: http://" << host << ":" << bound << "/  (Ctrl+C stops it)" << std::endl;
  const bool ok = server.listen_after_bind();
  std::cout << "Demonstration server stopped." << std::endl;
  return ok ? 0 : 2;
}

}  // namespace quorvel::demo
