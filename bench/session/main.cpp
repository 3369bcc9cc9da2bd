// tavrin-bench-observer
//
// Presses keys, and reports what happens on the desktop and when, a line an event: "SECONDS EVENT
// DETAIL", the seconds on the monotonic clock. Takes a command a line, until the input ends:
//
// clang-format off
//   watch WINDOW X Y   look at that pixel; keep asking the program of the window to answer
//   press CODE…        press these keys, by their codes, and release them: "pressed"; "changed"
//                      when the pixel then changes
//   longest            report how long the program has let a question wait, and how late the
//                      observer itself was to ask one: "longest MILLISECONDS MILLISECONDS"
// clang-format on
//
// Without being asked it reports "ready", "recording" when a program begins to record, and
// "inserted TEXT" when an editor has taken text in.

#include "EditorEvents.h"
#include "Report.h"
#include "Screen.h"
#include "SoundServer.h"

#include <cstdio>
#include <exception>
#include <glib.h>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace bench {

namespace {

struct Observer {
    Screen screen;
    SoundServer sound;
    EditorEvents editors;
    GMainLoop* loop = g_main_loop_new(nullptr, FALSE);
};

void obey(Screen& screen, const std::string& line)
{
    std::istringstream words(line);
    std::string command;
    words >> command;
    if (command == "watch") {
        unsigned long window = 0;
        int x = 0;
        int y = 0;
        words >> window >> x >> y;
        screen.watch(window, x, y);
    } else if (command == "press") {
        screen.press({std::istream_iterator<unsigned>(words), {}});
    } else if (command == "longest") {
        const Screen::Waits waits = screen.longestWaits();
        report("longest", std::to_string(waits.program) + ' ' + std::to_string(waits.machine));
    }
}

gboolean readCommand(GIOChannel* input, GIOCondition /*condition*/, gpointer data)
{
    auto& observer = *static_cast<Observer*>(data);
    gchar* line = nullptr;
    if (g_io_channel_read_line(input, &line, nullptr, nullptr, nullptr) != G_IO_STATUS_NORMAL) {
        g_main_loop_quit(observer.loop);
        return G_SOURCE_REMOVE;
    }
    obey(observer.screen, line);
    g_free(line);
    return G_SOURCE_CONTINUE;
}

} // namespace

} // namespace bench

int main()
try {
    bench::Observer observer;
    GIOChannel* input = g_io_channel_unix_new(0);
    g_io_add_watch(
        input, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP), bench::readCommand, &observer);
    bench::report("ready");
    g_main_loop_run(observer.loop);
    g_main_loop_unref(observer.loop);
    g_io_channel_unref(input);
    return 0;

} catch (const std::exception& error) {
    std::fprintf(stderr, "tavrin-bench-observer: %s\n", error.what());
    return 1;
}
