"""The runner of the documents finds what is shown wrongly, and lets pass what is right."""
import pathlib
import tempfile
import unittest

import run_documents


class RunDocuments(unittest.TestCase):
    def outcome(self, *block):
        with tempfile.TemporaryDirectory() as folder:
            programs = pathlib.Path(folder)
            program = programs / "krvcmd"
            program.write_text('#!/bin/sh\necho "got $*"\necho "said $*" >&2\nexit 7\n')
            program.chmod(0o755)
            document = programs / "text.md"
            document.write_text("\n".join(["Text", "```console", *block, "```", "More text"]) + "\n")
            result = run_documents.main([folder, str(document)])
            return result, document

    def test_passes_what_is_shown_as_it_is(self):
        self.assertEqual(self.outcome("$ krvcmd a b", "got a b", "said a b", "$ echo $?", "7")[0], 0)

    def test_knows_the_script_that_runs_the_program(self):
        self.assertEqual(self.outcome("$ scripts/run a", "got a", "said a")[0], 0)

    def test_fails_on_another_text(self):
        self.assertEqual(self.outcome("$ krvcmd a b", "got a c", "said a b")[0], 1)

    def test_fails_on_a_missing_line(self):
        self.assertEqual(self.outcome("$ krvcmd a b", "got a b")[0], 1)

    def test_fails_on_a_line_too_many(self):
        self.assertEqual(self.outcome("$ krvcmd a b", "got a b", "said a b", "more")[0], 1)

    def test_fails_on_an_unknown_program(self):
        self.assertEqual(self.outcome("$ krvcmdd a", "got a", "said a")[0], 1)

    def test_fails_on_commands_after_the_end_of_the_shell(self):
        self.assertEqual(self.outcome("$ exit", "$ true")[0], 1)

    def test_fails_on_what_the_shell_cannot_read(self):
        self.assertEqual(self.outcome("$ krvcmd (a)")[0], 1)
        self.assertEqual(self.outcome("$ krvcmd 'a")[0], 1)
        self.assertEqual(self.outcome("```", "`krvcmd (a)`", "```console", "$ echo a", "a")[0], 1)

    def test_three_dots_stand_for_any_lines(self):
        self.assertEqual(self.outcome("$ krvcmd a", "...", "said a")[0], 0)
        self.assertEqual(self.outcome("$ krvcmd a", "...", "said b")[0], 1)

    def test_a_command_goes_on_after_a_second_prompt(self):
        self.assertEqual(self.outcome("$ krvcmd a \\", "> b", "got a b", "said a b")[0], 0)

    def test_blocks_are_one_session(self):
        self.assertEqual(self.outcome("$ x=1", "```", "text", "```console", "$ echo $x", "1")[0], 0)

    def test_a_document_without_a_block_is_an_error(self):
        self.assertEqual(self.outcome()[0], 1)

    def test_a_block_may_show_a_terminal(self):
        width = "$ stty size <&2 | cut -d ' ' -f 2"
        self.assertEqual(self.outcome("```", "```console 72", width, "72", "$ test -t 1 && test -t 2 && echo yes", "yes")[0], 0)
        self.assertEqual(self.outcome("$ test -t 1 || echo no", "no")[0], 0)

    def test_all_documents_of_a_folder_count(self):
        with tempfile.TemporaryDirectory() as folder:
            for name, shown in (("a.md", "a"), ("b.md", "c")):
                pathlib.Path(folder, name).write_text(f"```console\n$ echo {name[0]}\n{shown}\n```\n")
            pathlib.Path(folder, "c.md").write_text("no command line here\n")
            self.assertEqual(run_documents.main([folder, folder]), 1)
            pathlib.Path(folder, "b.md").write_text("```console\n$ echo b\nb\n```\n")
            self.assertEqual(run_documents.main([folder, folder]), 0)

    def test_empty_lines_count(self):
        self.assertEqual(self.outcome("$ echo a; echo; echo b; echo", "a", "", "b", "")[0], 0)
        self.assertEqual(self.outcome("$ echo a; echo; echo b; echo", "a", "b", "")[0], 1)

    def test_command_lines_within_the_text_must_succeed(self):
        self.assertEqual(self.outcome("```", "Type `krvcmd a b`.", "```console", "$ echo a", "a")[0], 1)  # status 7
        self.assertEqual(self.outcome("```", "`krvcmd a || true`", "```console", "$ echo a", "a")[0], 0)
        self.assertEqual(self.outcome("```", "`krvsim`, `krvcmd --to FILE`", "```console", "$ echo a", "a")[0], 0)

    def test_command_lines_in_blocks_of_shell_must_succeed(self):
        fails = ("```", "```sh", "scripts/run a b   # why", "```", "```console", "$ echo a", "a")
        self.assertEqual(self.outcome(*fails)[0], 1)
        self.assertEqual(self.outcome("```", "```sh", "nothing-like-this", "```", "```console", "$ echo a", "a")[0], 1)
        passes = ("```", "```sh", "scripts/run a b || true # why", "", "```", "```console", "$ echo a", "a")
        self.assertEqual(self.outcome(*passes)[0], 0)

    def test_a_block_without_a_command_is_an_error(self):
        with self.assertRaises(SystemExit):
            self.outcome("got a b")


if __name__ == "__main__":
    unittest.main()
