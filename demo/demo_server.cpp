// The web server of the demonstration: the page, the form's picture and buttons, and the document view.
#include "demo/demo_server.hpp"

#include <httplib.h>
#include <malloc.h>
#include <pthread.h>
#include <stdlib.h>

#include <atomic>
#include <charconv>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <iostream>
#include <mutex>
#include <thread>

#include "demo/demo_form.hpp"
#include "demo/demo_page.hpp"
#include "demo/document_view.hpp"
#include "demo/page_svg.hpp"

namespace quorvel::demo {

namespace {

using nlohmann::json;

std::string JsonText(const json& value) { return value.dump(-1, ' ', false, json::error_handler_t::replace); }

int NumberParam(const httplib::Request& req, const char* name) {
  const std::string text = req.get_param_value(name);
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() && number > 0 ? number : 0;
}

void NoStore(httplib::Response& res) { res.set_header("Cache-Control", "no-store"); }

void Refuse(httplib::Response& res, int status, const std::string& error) {
  res.status = status;
  res.set_content(JsonText({{"ok", false}, {"error", error}}), "application/json");
}

// Everything the routes share. The component runs on one thread at a time (the printer, the
// profile and the picture have no locks of their own), so the routes that print take turns
// through `lock`; the page itself and the refusals need no turn.
struct Demo {
  DemoForm form;
  DocumentPrinter printer;
  PrintedDocuments documents;
  std::mutex lock;
  explicit Demo(const std::string& work_dir) : printer(work_dir) {}
};

// Large answers (pictures, PDFs) leave freed memory in the allocator's arenas; give it back so the
// server's size returns after a burst instead of staying at its peak.
struct TrimAfter {
  ~TrimAfter() { malloc_trim(0); }
};

void AddFormRoutes(httplib::Server& server, Demo& demo) {
  server.Get("/preview.svg", [&](const httplib::Request&, httplib::Response& res) {
    TrimAfter trim;
    std::lock_guard<std::mutex> turn(demo.lock);
    NoStore(res);
    res.set_content(demo.form.PictureSvg(), "image/svg+xml");
  });
  server.Get("/preview.json", [&](const httplib::Request& req, httplib::Response& res) {
    std::lock_guard<std::mutex> turn(demo.lock);
    NoStore(res);
    res.set_content(JsonText(demo.form.State(NumberParam(req, "known"))), "application/json");
  });
  server.Get(R"(/layer/(\d{1,9})\.svg)", [&](const httplib::Request& req, httplib::Response& res) {
    TrimAfter trim;
    std::lock_guard<std::mutex> turn(demo.lock);
    const int id = std::stoi(req.matches[1]);
    for (const PictureLayer& layer : demo.form.Layers())
      if (layer.id == id) return res.set_content(demo.form.LayerSvg(id), "image/svg+xml");
    res.status = 404;
  });
  // The answer carries the texts of the layers above the `known` one the page already has.
  server.Post(R"(/press/(Command[1-8]))", [&](const httplib::Request& req, httplib::Response& res) {
    std::lock_guard<std::mutex> turn(demo.lock);
    const PressResult result = demo.form.Press(req.matches[1]);
    json state = demo.form.State(result.cleared ? 0 : NumberParam(req, "known"));
    state["ok"] = result.ok;
    state["message"] = result.message;
    state["cleared"] = result.cleared;
    res.set_content(JsonText(state), "application/json");
  });
}

void SendPdf(Demo& demo, const std::string& document, httplib::Response& res) {
  TrimAfter trim;
  std::lock_guard<std::mutex> turn(demo.lock);
  try {
    res.set_content(demo.printer.Pdf(document), "application/pdf");
    res.set_header("Content-Disposition", "attachment; filename=\"quorvel-document.pdf\"");
  } catch (const std::exception& e) {
    Refuse(res, 400, CommandMessage(e));
  }
}

void AddDocumentRoutes(httplib::Server& server, Demo& demo) {
  server.Get("/samples.json", [](const httplib::Request&, httplib::Response& res) {
    json samples = json::array();
    for (const ViewSample& sample : ViewSamples()) samples.push_back({{"name", sample.name}, {"title", sample.title}});
    res.set_content(JsonText(samples), "application/json");
  });
  server.Get(R"(/sample/([a-z0-9_]{1,40})\.json)", [](const httplib::Request& req, httplib::Response& res) {
    try {
      res.set_content(SampleText(req.matches[1]), "application/json");
    } catch (const std::exception& e) {
      Refuse(res, 404, CommandMessage(e));
    }
  });
  // Prints the posted document; the answer gives its pages' sizes, fetched one by one below.
  server.Post("/document", [&](const httplib::Request& req, httplib::Response& res) {
    TrimAfter trim;
    std::lock_guard<std::mutex> turn(demo.lock);
    try {
      PrintedDocument printed = demo.printer.Pages(req.body);
      json pages = json::array();
      for (const PrintedPage& page : printed.pages) pages.push_back({{"width", page.width}, {"height", page.height}});
      const std::string type = printed.type;
      const int id = demo.documents.Add(std::move(printed));
      res.set_content(JsonText({{"ok", true}, {"id", id}, {"type", type}, {"pages", pages}}), "application/json");
    } catch (const std::exception& e) {
      Refuse(res, 400, CommandMessage(e));
    }
  });
  server.Get(R"(/document/(\d{1,9})/(\d{1,6})\.svg)", [&](const httplib::Request& req, httplib::Response& res) {
    TrimAfter trim;
    std::lock_guard<std::mutex> turn(demo.lock);
    const auto printed = demo.documents.Find(std::stoi(req.matches[1]));
    const size_t page = std::stoul(req.matches[2]);
    if (!printed || page < 1 || page > printed->pages.size()) return Refuse(res, 404, "no such page");
    const PrintedPage& drawn = printed->pages[page - 1];
    res.set_content(PageSvg(drawn.ops, drawn.width, drawn.height), "image/svg+xml");
  });
  server.Get(R"(/document/(\d{1,9})/ops\.jsonl)", [&](const httplib::Request& req, httplib::Response& res) {
    std::lock_guard<std::mutex> turn(demo.lock);
    const auto printed = demo.documents.Find(std::stoi(req.matches[1]));
    if (!printed) return Refuse(res, 404, "no such document");
    res.set_content(printed->ops_text, "application/jsonl");
    res.set_header("Content-Disposition", "attachment; filename=\"quorvel-document.jsonl\"");
  });
  server.Post("/pdf", [&](const httplib::Request& req, httplib::Response& res) { SendPdf(demo, req.body, res); });
  server.Get("/pdf", [&](const httplib::Request& req, httplib::Response& res) {
    std::string document;
    try {
      document = SampleText(req.get_param_value("sample"));
    } catch (const std::exception& e) {
      return Refuse(res, 404, CommandMessage(e));
    }
    SendPdf(demo, document, res);
  });
}

// Requests are served by a pool of threads, each request short: an idle or slow client is cut
// off after a few seconds, so that a handful of open sockets cannot hold every thread, and a
// body is at most a document's worth. Returns where the listening socket will be noted.
std::shared_ptr<socket_t> BoundRequests(httplib::Server& server) {
  server.new_task_queue = [] { return new httplib::ThreadPool(32); };
  server.set_read_timeout(3);
  server.set_write_timeout(5);
  server.set_keep_alive_timeout(3);
  server.set_keep_alive_max_count(100);
  server.set_payload_max_length(2 << 20);
  // Address reuse only: the library's default port sharing would let a second server take the
  // same port silently and split the requests between two pictures.
  auto listening = std::make_shared<socket_t>(-1);
  server.set_socket_options([listening](socket_t sock) {
    int yes = 1;
    setsockopt(sock, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
    *listening = sock;
  });
  // The library answers "br" with brotli at its slowest setting: over a second for one page's
  // SVG. gzip is quick and nearly as small, so browsers are offered only that. The request is
  // the library's own mutable object, handed to this hook as const.
  server.set_pre_routing_handler([](const httplib::Request& req, httplib::Response&) {
    auto& headers = const_cast<httplib::Headers&>(req.headers);
    const auto accepted = headers.find("Accept-Encoding");
    if (accepted != headers.end())
      accepted->second = accepted->second.find("gzip") != std::string::npos ? "gzip" : "identity";
    return httplib::Server::HandlerResponse::Unhandled;
  });
  return listening;
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

// A folder of its own for the files the printer writes, removed when the server stops.
class WorkDir {
 public:
  WorkDir() {
    const char* tmp = getenv("TMPDIR");
    std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/quorvel-demo-XXXXXX";
    if (!mkdtemp(pattern.data())) throw std::runtime_error("cannot make a folder under " + pattern);
    path_ = pattern;
  }
  ~WorkDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace

int ServeDemo(int port) {
  WorkDir work;
  Demo demo(work.Path());
  httplib::Server server;
  server.Get("/", [](const httplib::Request&, httplib::Response& res) {
    res.set_content(DemoPage(), "text/html; charset=utf-8");
  });
  AddFormRoutes(server, demo);
  AddDocumentRoutes(server, demo);
  const std::shared_ptr<socket_t> listening = BoundRequests(server);
  StopOnSignal stop(server);
  const std::string host = "127.0.0.1";  // this machine only
  const int bound = port == 0 ? server.bind_to_any_port(host) : (server.bind_to_port(host, port) ? port : -1);
  if (bound < 0) {
    std::cerr << "quorvel: cannot listen on " << host << ":" << port << " (is the port taken?)\n";
    return 2;
  }
  // The library listens with a queue of 5: a burst of connections beyond it waits in the
  // kernel's SYN retries for many seconds. Listening again only makes the queue longer.
  if (*listening >= 0) listen(*listening, SOMAXCONN);
  std::cout << "Demonstration: http://" << host << ":" << bound << "/  (Ctrl+C stops it)" << std::endl;
  const bool ok = server.listen_after_bind();
  std::cout << "Demonstration server stopped." << std::endl;
  return ok ? 0 : 2;
}

}  // namespace quorvel::demo
