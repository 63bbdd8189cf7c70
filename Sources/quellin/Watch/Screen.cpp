#include "quellin/Watch/Screen.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <cstdio>
#include <langinfo.h>
#include <string>

#define NCURSES_NOMACROS
#include <curses.h>

#include "quellin/Outcome/Failure.h"
#include "quellin/Watch/ScreenRescue.h"

namespace quellin::cli {
namespace {

constexpr int escapeDelay = 50;  // milliseconds; what follows Esc later is a key of its own
constexpr short ownBackground = -1;

enum Pair : short { plainPair = 0, goodPair, warningPair, badPair };

struct Look {
  attr_t attributes;
  Pair pair;
};

Look lookOf(Style style) {
  switch (style) {
    case Style::plain:
      return {A_NORMAL, plainPair};
    case Style::strong:
      return {A_BOLD, plainPair};
    case Style::good:
      return {A_NORMAL, goodPair};
    case Style::warning:
      return {A_BOLD, warningPair};
    case Style::bad:
      return {A_BOLD, badPair};
    case Style::faint:
      return {A_DIM, plainPair};
  }
  return {A_NORMAL, plainPair};
}

struct ScreenDeleter {
  void operator()(SCREEN* screen) const {
    endwin();
    delscreen(screen);
  }
};

bool namesUTF8(std::string locale) {
  std::ranges::transform(locale, locale.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return locale.find("utf-8") != std::string::npos || locale.find("utf8") != std::string::npos;
}

}  // namespace

struct Screen::Handle {
  std::unique_ptr<SCREEN, ScreenDeleter> screen;
  WINDOW* window = nullptr;  // all of the screen, which owns it
  bool hasColours = false;
  std::function<void()> rescue;
};

Screen::Screen(bool hasColours) : handle_(std::make_unique<Handle>()) {
  const auto settings = terminalSettings();
  handle_->screen.reset(newterm(nullptr, stdout, stdin));
  if (!handle_->screen) {
    throw Failure{ExitStatus::failed,
                  "watch: this kind of terminal is not known here. Set TERM to one that is, such as xterm."};
  }
  handle_->window = stdscr;
  handle_->rescue = screenRescue(settings);
  cbreak();
  noecho();
  nodelay(handle_->window, TRUE);
  keypad(handle_->window, TRUE);
  set_escdelay(escapeDelay);
  curs_set(0);
  handle_->hasColours = hasColours && has_colors() && start_color() == OK && use_default_colors() == OK;
  if (!handle_->hasColours) return;
  init_pair(goodPair, COLOR_GREEN, ownBackground);
  init_pair(warningPair, COLOR_YELLOW, ownBackground);
  init_pair(badPair, COLOR_RED, ownBackground);
}

Screen::~Screen() = default;

ViewSize Screen::size() const {
  return {.rows = getmaxy(handle_->window), .columns = getmaxx(handle_->window)};
}

void Screen::resize(ViewSize size) {
  resizeterm(size.rows, size.columns);
  clearok(handle_->window, TRUE);
}

void Screen::show(const Canvas& canvas) {
  werase(handle_->window);
  for (int row = 0; row < canvas.size().rows; ++row) {
    for (const Canvas::Run& run : canvas.runs(row)) {
      const Look look = lookOf(run.style);
      wattr_set(handle_->window, look.attributes, handle_->hasColours ? look.pair : plainPair, nullptr);
      mvwaddstr(handle_->window, row, run.column, run.text.c_str());
    }
  }
  wrefresh(handle_->window);
}

const std::function<void()>& Screen::rescue() const { return handle_->rescue; }

std::optional<int> Screen::key() {
  const int key = wgetch(handle_->window);
  return key == ERR ? std::nullopt : std::optional{key};
}

CharacterSet adoptCharacterSet(const Environment& environment) {
  // NOLINTBEGIN(concurrency-mt-unsafe): no other thread runs yet that asks for the locale
  if (std::setlocale(LC_CTYPE, "") == nullptr) {
    std::string wanted;
    for (const char* const name : {"LANG", "LC_CTYPE", "LC_ALL"}) {
      if (const auto value = environment(name).value_or(""); !value.empty()) wanted = value;
    }
    if (namesUTF8(wanted)) std::setlocale(LC_CTYPE, "C.UTF-8");
  }
  const bool usesUTF8 = std::string{nl_langinfo(CODESET)} == "UTF-8";
  // NOLINTEND(concurrency-mt-unsafe)
  return usesUTF8 ? CharacterSet::unicode : CharacterSet::ascii;
}

}  // namespace quellin::cli
