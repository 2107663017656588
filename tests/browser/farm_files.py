"""Farms of a test's own, in a folder that is gone afterwards."""
import json
import os
import pathlib
import subprocess
import tempfile


class FarmFiles:
    def __init__(self, krvsim):
        self.krvsim = krvsim
        self.folder = tempfile.TemporaryDirectory()
        self.path = pathlib.Path(self.folder.name)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.folder.cleanup()

    def run(self, *words):
        """What krvsim prints."""
        environment = dict(os.environ, KRVSIM_HOME=str(self.path / "farms"))
        result = subprocess.run([self.krvsim, *words], env=environment, capture_output=True, check=False)
        assert result.returncode == 0, result.stderr
        return result.stdout

    def farm(self, server="."):
        return json.loads(self.run("dump", "--server", server, "--format", "json"))

    def page(self, server="."):
        """The file of the page of a farm."""
        file = self.path / f"{len(list(self.path.iterdir()))}.html"
        file.write_bytes(self.run("dump", "--server", server, "--format", "html"))
        return file

    def create(self, layout, server="."):
        file = self.path / "layout.toml"
        file.write_text(layout, encoding="utf-8")
        self.run("init", "--force", "--server", server, "--layout", str(file))
