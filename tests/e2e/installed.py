#!/usr/bin/python3
"""`installed.py PICTURE`: finds the installed program in the desktop's menu, starts it from there in
an empty home, looks for its window, and closes it. The window is saved as PICTURE."""
import os
import subprocess
import sys

sys.dont_write_bytecode = True

from xdg import IconTheme, Menu  # noqa: E402

from display import Display  # noqa: E402
from driver import Screen  # noqa: E402


def entries(menu):
    """Every entry that is shown, with the names of the menus that lead to it."""
    for entry in menu.getEntries():
        if isinstance(entry, Menu.Menu):
            yield from ((f'{menu.getName()} > {path}', found) for path, found in entries(entry))
        elif isinstance(entry, Menu.MenuEntry):
            yield menu.getName(), entry


def find_in_menu():
    menu = Menu.parse('/etc/xdg/menus/gnome-applications.menu')
    found = [(path, entry.DesktopEntry) for path, entry in entries(menu)
             if entry.DesktopEntry.getName() == 'Torvane']
    if len(found) != 1:
        raise SystemExit(f'the menu shows Torvane {len(found)} times')
    path, entry = found[0]
    for size in (16, 32, 48, 64, 256):
        icon = IconTheme.getIconPath(entry.getIcon(), size, 'hicolor') or ''
        if f'/{size}x{size}/' not in icon:
            raise SystemExit(f'there is no icon of {size} pixels, but {icon or "none"}')
    print(f'in the menu: {path} > {entry.getName()} ({entry.getComment()})')
    return entry.getFileName()


def main_window(screen):
    """The splash window has the name too, but is smaller."""
    for window in screen.named('^Torvane$'):
        place = screen.place(window)
        if place and place.width >= 480 and place.height >= 300:
            return window
    return None


def main():
    file = find_in_menu()
    home = os.environ['HOME']
    os.makedirs(home)
    for name in [name for name in os.environ if name.startswith(('WINE', 'XDG_'))]:
        del os.environ[name]
    with Display() as display:
        screen = Screen(display)
        subprocess.run(['gio', 'launch', file], env=display.environment, check=True)
        window = display.wait(lambda: main_window(screen), "Torvane's window", 60)
        process = int(screen.xdo('getwindowpid', window))
        program = os.readlink(f'/proc/{process}/exe')
        display.look_when_still().save(sys.argv[1])
        screen.xdo('windowactivate', window)
        screen.key('alt+F4')
        display.wait(lambda: not os.path.exists(f'/proc/{process}'), 'the program to end', 30)
    made = os.path.isfile(os.path.join(home, '.local/share/torvane/prefix/torvane.reg'))
    print(f'{program} opened its window' + (', closed, and kept its settings' if made else ''))
    return 0 if program == '/usr/bin/torvane' and made else 1


sys.exit(main())
