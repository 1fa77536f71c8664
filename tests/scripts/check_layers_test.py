"""The layering check: the tree as it is passes, and each kind of include that breaks the floors of
scripts/layers.txt fails with the file, the line and the folders named."""
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

REPOSITORY = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
CHECKER = os.path.join(REPOSITORY, 'scripts', 'check-layers')


def run_checker(root):
    result = subprocess.run([sys.executable, CHECKER, '--root', root], capture_output=True, text=True)
    return result.returncode, result.stdout


class check_layers_test(unittest.TestCase):
    def setUp(self):
        # A copy of the tree's sources and table, so that an include can be planted in it.
        self.root = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.root)
        ignore = shutil.ignore_patterns('build', 'out', '.git', '*.png', '*.jpg', '*.gif', 'corpus')
        for name in os.listdir(REPOSITORY):
            source = os.path.join(REPOSITORY, name)
            if os.path.isdir(source) and name not in ('build', 'out', '.git'):
                shutil.copytree(source, os.path.join(self.root, name), ignore=ignore)

    def append_line(self, path, line):
        with open(os.path.join(self.root, path), 'a', encoding='utf-8') as source:
            source.write(line + '\n')

    def line_count(self, path):
        with open(os.path.join(self.root, path), encoding='utf-8') as source:
            return sum(1 for _ in source)

    def test_the_tree_as_it_is_passes(self):
        status, output = run_checker(REPOSITORY)
        self.assertEqual(status, 0, output)
        self.assertIn('all within the floors', output)

    def test_the_copy_passes_before_anything_is_planted(self):
        status, output = run_checker(self.root)
        self.assertEqual(status, 0, output)

    def test_an_include_from_the_foundation_up_into_the_editor_fails(self):
        self.append_line('zel_basics/array.h', '#include "rofa_editor/app/rofa_app.h"')
        status, output = run_checker(self.root)
        self.assertEqual(status, 1)
        self.assertIn('zel_basics/array.h:%d: includes rofa_editor/app/rofa_app.h, but zel_basics may not '
                      'include rofa_editor/app' % self.line_count('zel_basics/array.h'), output)
        self.assertIn('1 include(s) break the floors', output)

    def test_an_include_one_room_up_inside_the_engine_fails(self):
        self.append_line('art_engine/pixels/art_bitmap.cpp', '#include "art_engine/objects/art_object.h"')
        status, output = run_checker(self.root)
        self.assertEqual(status, 1)
        self.assertIn('art_engine/pixels/art_bitmap.cpp:%d: includes art_engine/objects/art_object.h, but '
                      'art_engine/pixels may not include art_engine/objects' %
                      self.line_count('art_engine/pixels/art_bitmap.cpp'), output)

    def test_an_include_between_rooms_of_one_floor_fails(self):
        self.append_line('art_engine/shapes/art_shapes.cpp', '#include "art_engine/effects/art_outline.h"')
        status, output = run_checker(self.root)
        self.assertEqual(status, 1)
        self.assertIn('art_engine/shapes may not include art_engine/effects', output)

    def test_a_binding_that_reaches_into_the_editor_fails(self):
        self.append_line('rofa_headless_sal/rofa_headless_gal.cpp', '#include "rofa_editor/app/rofa_app.h"')
        status, output = run_checker(self.root)
        self.assertEqual(status, 1)
        self.assertIn('rofa_headless_sal may not include rofa_editor/app', output)

    def test_an_include_further_down_passes(self):
        self.append_line('rofa_editor/app/rofa_app.cpp', '#include "zel_basics/array.h"')
        status, output = run_checker(self.root)
        self.assertEqual(status, 0, output)

    def test_a_source_file_outside_every_folder_of_the_table_fails(self):
        os.makedirs(os.path.join(self.root, 'stray'))
        self.append_line('stray/stray.cpp', '#include "zel_basics/array.h"')
        status, output = run_checker(self.root)
        self.assertEqual(status, 1)
        self.assertIn('stray/stray.cpp: is in no folder of scripts/layers.txt', output)

    def test_a_table_that_names_a_folder_declared_below_it_fails(self):
        self.append_line('scripts/layers.txt', 'zel_basics_extra          rofa_never_declared')
        status, output = run_checker(self.root)
        self.assertEqual(status, 1)
        self.assertIn('zel_basics_extra names rofa_never_declared, which is not declared above it', output)

    def test_a_folder_declared_twice_fails(self):
        self.append_line('scripts/layers.txt', 'xbd zel_basics')
        status, output = run_checker(self.root)
        self.assertEqual(status, 1)
        self.assertIn('xbd is declared twice', output)


if __name__ == '__main__':
    unittest.main()
