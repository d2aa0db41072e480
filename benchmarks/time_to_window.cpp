// Starts programs by turns, so that a busy machine meets them all alike, and prints for each the
// median of the seconds from its exec to the moment when its main window, the first top-level one
// of 600 pixels and more, is painted: most of it has been drawn on the screen.
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/damage.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <vector>

namespace {

constexpr int kRuns = 31;
constexpr int kMainWindowWidth = 600;
constexpr unsigned kPatience = 30;  // seconds

struct FreeReply {
  void operator()(void* reply) const {
    std::free(reply);  // NOLINT(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory)
  }
};
template <class Reply>
using Owned = std::unique_ptr<Reply, FreeReply>;

std::uint8_t DamageEvent(xcb_connection_t* server) {
  return xcb_get_extension_data(server, &xcb_damage_id)->first_event;
}

/// Whether the event says that most of a main window among `windows` has been drawn. What the
/// program before has drawn may be told late.
bool IsPainted(const xcb_damage_notify_event_t& event, const std::vector<xcb_window_t>& windows) {
  if (std::find(windows.begin(), windows.end(), event.drawable) == windows.end()) return false;
  const auto square = [](const xcb_rectangle_t& place) { return place.width * place.height; };
  return event.geometry.width >= kMainWindowWidth &&
         square(event.area) * 2 > square(event.geometry);
}

std::optional<double> TimeToWindow(xcb_connection_t* server, char* program) {
  using Clock = std::chrono::steady_clock;
  const auto begin = Clock::now();
  const pid_t child = fork();
  if (child == 0) {
    const std::array<char*, 2> command{program, nullptr};
    execv(program, command.data());
    _exit(127);
  }
  alarm(kPatience);
  std::optional<double> seconds;
  std::vector<xcb_window_t> windows;
  while (!seconds) {
    const Owned<xcb_generic_event_t> event(xcb_wait_for_event(server));
    if (!event) break;
    const int kind = event->response_type & 0x7F;
    if (kind == XCB_CREATE_NOTIFY) {
      const auto* made = reinterpret_cast<const xcb_create_notify_event_t*>(event.get());
      windows.push_back(made->window);
      xcb_damage_create(server, xcb_generate_id(server), made->window,
                        XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
      xcb_flush(server);
    } else if (kind == DamageEvent(server) + XCB_DAMAGE_NOTIFY &&
               IsPainted(*reinterpret_cast<const xcb_damage_notify_event_t*>(event.get()),
                         windows)) {
      seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    }
  }
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  return seconds;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<char*> programs(argv + 1, argv + argc);
  xcb_connection_t* server = xcb_connect(nullptr, nullptr);
  if (xcb_connection_has_error(server) != 0) return 1;
  const Owned<xcb_damage_query_version_reply_t> version(xcb_damage_query_version_reply(
      server, xcb_damage_query_version(server, XCB_DAMAGE_MAJOR_VERSION, XCB_DAMAGE_MINOR_VERSION),
      nullptr));
  if (!version) return 1;
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(server)).data->root;
  const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
  xcb_change_window_attributes(server, root, XCB_CW_EVENT_MASK, &mask);
  xcb_flush(server);
  std::vector<std::vector<double>> times(programs.size());
  for (int run = 0; run < kRuns; ++run) {
    for (std::size_t i = 0; i < programs.size(); ++i) {
      const auto seconds = TimeToWindow(server, programs[i]);
      if (!seconds) return 1;
      times[i].push_back(*seconds);
    }
  }
  xcb_disconnect(server);
  for (std::vector<double>& ofOne : times) {
    std::sort(ofOne.begin(), ofOne.end());
    std::printf("%.6f\n", ofOne[ofOne.size() / 2]);
  }
  return 0;
}
