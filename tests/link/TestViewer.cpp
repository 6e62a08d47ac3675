#include <cstdlib>
#include <deque>
#include <fstream>
#include <functional>
#include <future>
#include <iostream>
#include <map>
#include <mutex>
#include <sstream>

#include "core/Log.h"
#include "link/IpcInterfaceApp.h"
#include "link/RecordingFrame.h"
#include "link/TestWindow.h"
#include "platform/Clock.h"

// The viewer's end of the link as a program of its own, without anything behind it: it writes down
// what the host wants of it, and does with the link what status messages that begin with "!" tell
// it to.
//
//   --windowhandle=N --processid=N   as for the viewer
//   --record=FILE                    where it writes to, a line for each thing that happens
//   --hidden=MILLISECONDS            the window is shown only after that time
//   --until=FILE                     ends when that file is there, instead of with its link
namespace qv {
namespace {

// Nothing that starts this is meant to wait longer.
constexpr double kLifetimeSeconds = 120;

class Recorder {
 public:
  explicit Recorder(const std::string& path) : file_(path) {}
  void Write(const std::string& line) {
    const std::lock_guard<std::mutex> lock(mutex_);
    file_ << line << std::endl;
  }

 private:
  std::mutex mutex_;
  std::ofstream file_;
};

std::string HexText(std::span<const std::byte> bytes) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (const std::byte b : bytes) {
    text += kDigits[std::to_integer<unsigned>(b) >> 4];
    text += kDigits[std::to_integer<unsigned>(b) & 15];
  }
  return text;
}

class TestViewer;

class ObedientFrame final : public RecordingFrame {
 public:
  ObedientFrame(Recorder& recorder, TestViewer& viewer)
      : RecordingFrame([&recorder](const std::string& line) { recorder.Write(line); }),
        viewer_(viewer) {}
  void SetStatusMessage(const std::string& text) override;

 private:
  TestViewer& viewer_;
};

class TestViewer {
 public:
  TestViewer(std::map<std::string, std::string> options)
      : options_(std::move(options)),
        recorder_(options_["record"]),
        frame_(recorder_, *this),
        window_(TestWindow::Create([this](std::uint32_t number) {
          if (link_) link_->HandleFrameMessage(number);
        })),
        link_(std::make_unique<IpcInterfaceApp>(
            Number("windowhandle"), Number("processid"), &frame_, [this] { window_->Wake(); },
            [this] { return window_->visible(); })) {
    SetLogSink([this](LogLevel, const std::string& text) { recorder_.Write("log " + text); });
  }
  ~TestViewer() { SetLogSink({}); }

  int Run() {
    recorder_.Write(link_->Open() ? "opened" : "not opened");
    link_->Start();
    const double start = platform::NowSeconds();
    while (!ended_ && platform::NowSeconds() < start + kLifetimeSeconds) {
      if (!shown_ && platform::NowSeconds() >= start + Number("hidden") / 1000.0) {
        window_->Show(true);
        shown_ = true;
      }
      window_->HandleEvents();
      link_->Dispatch();
      RunOrders();
      if (options_.count("until") != 0 && std::ifstream(options_["until"])) break;
    }
    if (!ended_) Stop();
    recorder_.Write("end");
    return 0;
  }

  // On the listener's thread, within the command. "gui" in front has the GUI thread do it, while
  // this one waits.
  void Obey(const std::string& order) {
    if (order.rfind("gui ", 0) != 0) {
      Do(order);
      return;
    }
    OnGuiThreadAndWait([this, &order] { Do(order.substr(4)); });
  }

 private:
  std::uint32_t Number(const char* option) {
    return static_cast<std::uint32_t>(std::strtoul(options_[option].c_str(), nullptr, 10));
  }

  void OnGuiThread(std::function<void()> order) {
    const std::lock_guard<std::mutex> lock(mutex_);
    orders_.push_back(std::move(order));
    window_->Wake();
  }

  void OnGuiThreadAndWait(const std::function<void()>& order) {
    std::promise<void> done;
    OnGuiThread([&order, &done] {
      order();
      done.set_value();
    });
    done.get_future().wait();
  }

  void RunOrders() {
    for (;;) {
      std::function<void()> order;
      {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (orders_.empty()) return;
        order = std::move(orders_.front());
        orders_.pop_front();
      }
      order();
    }
  }

  void Stop() {
    link_->TellClosed();
    link_->Stop([this] { RunOrders(); });
    recorder_.Write("stopped");
    ended_ = true;
  }

  void Do(const std::string& order);
  void Ask(const std::string& what, std::istream& words);

  std::map<std::string, std::string> options_;
  Recorder recorder_;
  ObedientFrame frame_;
  bool shown_ = false;
  bool ended_ = false;

  std::mutex mutex_;
  std::deque<std::function<void()>> orders_;

  std::unique_ptr<TestWindow> window_;
  std::unique_ptr<IpcInterfaceApp> link_;
};

void ObedientFrame::SetStatusMessage(const std::string& text) {
  if (text.rfind('!', 0) == 0) {
    viewer_.Obey(text.substr(1));
  } else {
    RecordingFrame::SetStatusMessage(text);
  }
}

void TestViewer::Do(const std::string& order) {
  std::istringstream words(order);
  std::string what;
  words >> what;
  if (what == "SendCamera") {
    link_->SendCamera({1, 2, 3}, {0, 1, 0}, {0, 0, 1}, 0.5f);
  } else if (what == "SendDateTime") {
    link_->SendDateTime(2024, 2, 29, 23, 58, 59);
  } else if (what == "SetBrightness") {
    link_->SetBrightness(0.25f, 1.5f);
  } else if (what == "SetGamma") {
    link_->SetGamma(2.25f);
  } else if (what == "SetLightFactors") {
    link_->SetLightFactors({1, 2, 3, 4, true});
  } else if (what == "SetBackground") {
    link_->SetBackground(2, -1);
  } else if (what == "SetEyeHeight") {
    link_->SetEyeHeight(70);
  } else if (what == "SetProperty") {
    // NAME LENGTH: bytes that count up.
    std::string name;
    std::size_t length = 0;
    words >> name >> length;
    std::vector<std::byte> value(length);
    for (std::size_t i = 0; i < length; ++i) value[i] = static_cast<std::byte>(i & 0xff);
    link_->SetProperty(name, value);
  } else if (what == "RequestResend") {
    link_->RequestResend();
  } else if (what == "Work") {
    unsigned milliseconds = 0;
    words >> milliseconds;
    platform::SleepMilliseconds(milliseconds);
    recorder_.Write("worked");
  } else if (what == "WorkAndAsk") {
    platform::SleepMilliseconds(300);
    Do("GetCamera");
  } else if (what == "CloseMeanwhile") {
    // The GUI thread closes the link while this command still has much to do.
    OnGuiThread([this] { Stop(); });
    platform::SleepMilliseconds(200);
    OnGuiThreadAndWait([this] { recorder_.Write("worked on the GUI thread"); });
    Do("GetProperty gamma");
    recorder_.Write("worked");
  } else {
    Ask(what, words);
  }
}

void TestViewer::Ask(const std::string& what, std::istream& words) {
  std::string line = what;
  if (what == "GetProperty") {
    std::string name;
    words >> name;
    const auto value = link_->GetProperty(name);
    line += " " + name + " " + (value ? HexText(*value) : "none");
  } else if (what == "GetCamera") {
    const auto camera = link_->GetCamera();
    if (camera) {
      line += " " + VectorText(camera->position) + ", " + VectorText(camera->forward) + ", " +
              VectorText(camera->up) + ", " + NumbersText(std::span(&camera->fieldOfView, 1)) +
              ", " + VectorText(camera->target);
    } else {
      line += " none";
    }
  } else if (what == "GetLocation") {
    const auto when = link_->GetLocation();
    if (when) {
      frame_.SetLocationAndTime(*when);
    } else {
      line += " none";
    }
  } else if (what == "GetPages") {
    for (const HostPage& page : link_->GetPages()) {
      const float last[] = {page.fieldOfView, page.latitude, page.longitude, page.sunParam};
      line += " [";
      for (const char16_t unit : page.name) line += unit < 128 ? static_cast<char>(unit) : '?';
      line += "|" + VectorText(page.eye) + "|" + VectorText(page.direction) + "|" +
              NumbersText(last) + "|" + (page.hasSunTime ? "sun" : "no sun");
      for (const int n : {page.year, page.month, page.day, page.hour, page.minute, page.second}) {
        line += " " + std::to_string(n);
      }
      line += "]";
    }
  } else {
    line = "unknown order " + what;
  }
  recorder_.Write(line);
}

int Main(int count, char** words) {
  std::map<std::string, std::string> options;
  for (int i = 1; i < count; ++i) {
    const std::string word = words[i];
    const std::size_t equals = word.find('=');
    if (word.rfind("--", 0) != 0) return 2;
    options[word.substr(2, equals == std::string::npos ? equals : equals - 2)] =
        equals == std::string::npos ? "" : word.substr(equals + 1);
  }
  if (options.count("windowhandle") == 0 || options.count("processid") == 0) return 2;
  return TestViewer(options).Run();
}

}  // namespace
}  // namespace qv

int main(int count, char** words) {
  return qv::Main(count, words);
}
