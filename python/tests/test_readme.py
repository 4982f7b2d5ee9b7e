"""The README's Python example runs as printed and finds the 24 objects of the coins photograph."""

import contextlib
import io
import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parents[2]


def test_readme_example(tmp_path, monkeypatch):
    readme = (ROOT / "README.md").read_text()
    section = readme[readme.index("## Python"):]
    code = re.search(r"```python\n(.*?)```", section, re.S).group(1)
    code = code.replace('"samples/', f'"{ROOT}/samples/')
    monkeypatch.chdir(tmp_path)
    printed = io.StringIO()
    with contextlib.redirect_stdout(printed):
        exec(compile(code, "README.md", "exec"), {})
    assert len(printed.getvalue().splitlines()) == 24
    assert (tmp_path / "coins_marked.bmp").stat().st_size > 300000
