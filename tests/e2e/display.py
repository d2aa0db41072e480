#!/usr/bin/python3
"""A screen of our own: an X server in memory with a window manager, and what is seen on it.

As a command, `display.py COMMAND...` runs the command on such a screen and gives its status.
"""
import mmap
import os
import shutil
import struct
import subprocess
import sys
import tempfile
import time
import zlib


class Picture:
    """What stood on the screen at one moment, as rows of 4 bytes a pixel (blue, green, red, 0)."""

    def __init__(self, width, height, pitch, pixels):
        self.width, self.height, self.pitch, self.pixels = width, height, pitch, pixels

    def row(self, y, left=0, right=None):
        right = self.width if right is None else right
        return self.pixels[y * self.pitch + left * 4:y * self.pitch + right * 4]

    def save(self, path, left=0, top=0, width=None, height=None):
        """Writes a PNG file of the picture or of a rectangle of it."""
        left, top = max(left, 0), max(top, 0)
        width = min(width or self.width, self.width - left)
        height = min(height or self.height, self.height - top)
        lines = bytearray()
        for y in range(top, top + height):
            row = self.row(y, left, left + width)
            line = bytearray(3 * width)
            line[0::3], line[1::3], line[2::3] = row[2::4], row[1::4], row[0::4]
            lines += b'\0' + line

        def chunk(kind, body):
            return (struct.pack('>I', len(body)) + kind + body +
                    struct.pack('>I', zlib.crc32(kind + body)))

        header = struct.pack('>IIBBBBB', width, height, 8, 2, 0, 0, 0)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, 'wb') as file:
            file.write(b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', header) +
                       chunk(b'IDAT', zlib.compress(bytes(lines))) + chunk(b'IEND', b''))


class Display:
    """An X server and a window manager that live as long as the `with` block."""

    def __init__(self, width=1280, height=1024):
        self.size = f'{width}x{height}x24'
        self.processes = []

    def __enter__(self):
        try:
            self._start()
        except BaseException:
            self.__exit__()
            raise
        return self

    def _start(self):
        self.folder = tempfile.mkdtemp(prefix='torvane-screen-')
        reader, writer = os.pipe()
        self._spawn(['Xvfb', '-displayfd', str(writer), '-screen', '0', self.size, '-fbdir',
                     self.folder, '-nolisten', 'tcp', '-noreset'], pass_fds=[writer])
        os.close(writer)
        with os.fdopen(reader) as answer:
            number = answer.readline().strip()
        if not number:
            raise RuntimeError('Xvfb gave no display')
        self.environment = {**os.environ, 'DISPLAY': ':' + number, 'QT_QPA_PLATFORM': 'xcb',
                            'XDG_RUNTIME_DIR': self.folder, 'TMPDIR': self.folder}
        if 'UTF-8' not in os.environ.get('LC_ALL', os.environ.get('LANG', '')).upper():
            self.environment['LC_ALL'] = 'C.UTF-8'
        self._spawn(['openbox'], env=self.environment)
        self.wait(lambda: 'window id' in self.run('xprop', '-root', '_NET_SUPPORTING_WM_CHECK'),
                  'the window manager')
        self.file = open(os.path.join(self.folder, 'Xvfb_screen0'), 'rb')
        self.memory = mmap.mmap(self.file.fileno(), 0, prot=mmap.PROT_READ)

    def _spawn(self, command, **options):
        self.processes.append(subprocess.Popen(command, stdin=subprocess.DEVNULL,
                                               stdout=subprocess.DEVNULL,
                                               stderr=subprocess.DEVNULL, **options))

    def __exit__(self, *_):
        for process in reversed(self.processes):
            process.terminate()
            process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    def run(self, *command):
        """The output of a command run on this display."""
        return subprocess.run(command, env=self.environment, stdin=subprocess.DEVNULL, text=True,
                              capture_output=True, check=False).stdout

    @staticmethod
    def wait(condition, what, seconds=60):
        """The first result of condition() that counts as true; an error names what didn't come."""
        end = time.monotonic() + seconds
        while not (result := condition()):
            if time.monotonic() > end:
                raise TimeoutError(f'waited {seconds} s in vain for {what}')
            time.sleep(0.05)
        return result

    def look(self):
        """The screen as it is now. The server keeps it in a file in the XWD format."""
        header = struct.unpack('>20I', self.memory[:80])
        start = header[0] + 12 * header[19]
        width, height, pitch = header[4], header[5], header[12]
        return Picture(width, height, pitch, self.memory[start:start + pitch * height])

    def look_when_still(self, quiet=0.25, seconds=20):
        """The screen once it hasn't changed for a while."""
        end = time.monotonic() + seconds
        seen, since = self.look(), time.monotonic()
        while time.monotonic() - since < quiet:
            if time.monotonic() > end:
                raise TimeoutError('the screen never comes to rest')
            time.sleep(0.05)
            now = self.look()
            if now.pixels != seen.pixels:
                seen, since = now, time.monotonic()
        return seen


if __name__ == '__main__':
    with Display() as display:
        sys.exit(subprocess.run(sys.argv[1:], env=display.environment, check=False).returncode)
