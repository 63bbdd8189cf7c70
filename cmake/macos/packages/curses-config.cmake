# The ncurses that is part of macOS; it shows UTF-8.
set(CURSES_INCLUDE_DIRS "")
set(CURSES_LIBRARIES -lncurses)
