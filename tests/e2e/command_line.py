#!/usr/bin/python3
"""`command_line.py PROGRAM`: what the Linux program says on a terminal that has no display."""
import os
import subprocess
import sys
import tempfile
import unittest

PROGRAM = sys.argv.pop()
NO_DISPLAY = 'no display to open a window on'
USAGE = 'Usage: torvane [--help | --version | --prefix FOLDER]'


class CommandLine(unittest.TestCase):
    def call(self, *arguments, stdout=subprocess.PIPE, **variables):
        """Status, output and error lines of a call in a home without a prefix."""
        with tempfile.TemporaryDirectory() as home:
            done = subprocess.run(
                [PROGRAM, *arguments], env={'HOME': home, 'XDG_RUNTIME_DIR': home, **variables},
                stdin=subprocess.DEVNULL, stdout=stdout, stderr=subprocess.PIPE, text=True,
                timeout=60, check=False)
            self.assertEqual(os.listdir(home), [], arguments)
        return done.returncode, done.stdout, done.stderr.splitlines()

    def test_answers_without_a_display(self):
        status, output, errors = self.call('--version')
        self.assertEqual((status, errors), (0, []))
        self.assertRegex(output, r'^Torvane \d+\.\d+\.\d+\nCopyright Halvex\. ')
        status, output, errors = self.call('--help')
        self.assertEqual((status, errors), (0, []))
        self.assertEqual(output.splitlines()[0], USAGE)
        with open('/dev/full', 'w') as full:
            status, _, errors = self.call('--version', stdout=full)
        self.assertEqual((status, len(errors)), (1, 1))

    def test_refuses_other_arguments(self):
        for arguments in (['x'], [''], ['-h'], ['--versions'], ['--help', '--version'],
                          ['--', '--help'], ['-platform', 'offscreen'], ['a\nb\x1b[2J'],
                          ['--prefix'], ['--prefix', ''], ['--prefix', '/', 'x'], ['--prefix=/']):
            status, output, errors = self.call(*arguments)
            self.assertEqual((status, output, errors[1:]), (1, '', [USAGE]), arguments)
            self.assertTrue(errors[0].isprintable(), arguments)

    def test_opens_the_prefix_in_a_folder_or_says_what_it_looked_for(self):
        with tempfile.TemporaryDirectory() as folder:
            os.makedirs(folder + '/proton/pfx/drive_c')
            for place in ('/proton', '/proton/pfx', '/proton/pfx/../'):
                status, output, errors = self.call('--prefix', folder + place)
                self.assertEqual((status, output, len(errors)), (1, '', 1))
                self.assertIn(NO_DISPLAY, errors[0])
            for place in ('', '/proton/pfx/drive_c', '/no\nne'):
                status, output, errors = self.call('--prefix', folder + place)
                self.assertEqual((status, output, len(errors)), (1, '', 1))
                self.assertIn('has a folder drive_c', errors[0])
                self.assertIn((folder + place).replace('\n', '?'), errors[0])

    def test_says_in_one_line_that_there_is_no_display(self):
        for variables in ({}, {'DISPLAY': ':4711'}, {'DISPLAY': 'nonsense'},
                          {'WAYLAND_DISPLAY': 'wayland-0'}, {'WAYLAND_DISPLAY': '/' + 'x' * 200},
                          {'QT_QPA_PLATFORM': 'xcb'}, {'QT_QPA_PLATFORM': 'wayland;xcb'}):
            status, output, errors = self.call(**variables)
            self.assertEqual((status, output, len(errors)), (1, '', 1), (variables, errors))
            self.assertIn(NO_DISPLAY, errors[0])


unittest.main()
