"""Wine prefixes: one is prepared per machine and kept in the cache, every use takes a copy of it.

The preparation sets what Japanese needs: replacements of the usual Windows fonts by the IPA ones and grey-scale
smoothing, and Wine's symbol fonts, which draw the signs on caption buttons. The locale is compiled into the cache too, so that the machine's own locales stay as they are.
"""

import fcntl
import hashlib
import os
import pathlib
import shutil
import subprocess
import tempfile

LOCALES = ("ja_JP", "en_US")

_GOTHIC = ("MS PGothic", "ＭＳ Ｐゴシック", "MS UI Gothic", "Tahoma", "MS Sans Serif", "Segoe UI", "Arial", "Meiryo", "メイリオ",
           "Meiryo UI", "Yu Gothic UI")
_FONT_REPLACEMENTS = {name: "IPAPGothic" for name in _GOTHIC} | {
    "MS Gothic": "IPAGothic", "ＭＳ ゴシック": "IPAGothic"}
_REGISTRY = {
    r"HKEY_CURRENT_USER\Software\Wine\Fonts\Replacements": _FONT_REPLACEMENTS,
    r"HKEY_LOCAL_MACHINE\Software\Microsoft\Windows NT\CurrentVersion\FontSubstitutes": {
        "MS Shell Dlg": "MS UI Gothic", "MS Shell Dlg 2": "MS UI Gothic"},
    r"HKEY_CURRENT_USER\Control Panel\Desktop": {
        "FontSmoothing": "2", "FontSmoothingType": 1, "FontSmoothingGamma": 1400},
    r"HKEY_CURRENT_USER\Software\Wine\WineDbg": {"ShowCrashDialog": 0},
    # Pages go to the browser of the machine: Wine's own engine for them is left out.
    r"HKEY_LOCAL_MACHINE\Software\Classes\.html": {"": "htmlfile"},
}
_WINE_FONTS = pathlib.Path("/usr/share/wine/fonts")
# Large files that nobody writes to are shared between copies of a prefix by hard links.
_SHARED_SUFFIXES = {".dll", ".exe", ".drv", ".ocx", ".sys", ".nls", ".ttf", ".fon", ".cpl", ".tlb", ".acm", ".ax"}


def cache_dir():
    """The folder outside the checkout that tools/deps/common.sh uses as well."""
    base = os.environ.get("QUENLOX_CACHE")
    if not base:
        base = os.path.join(os.environ.get("XDG_CACHE_HOME") or os.path.expanduser("~/.cache"), "quenlox")
    path = pathlib.Path(base)
    path.mkdir(parents=True, exist_ok=True)
    return path


def registry_text(keys):
    """A registry file for regedit: UTF-16 with a byte-order mark, which names in Japanese need."""
    def value(v):
        return f"dword:{v:08x}" if isinstance(v, int) else '"' + v.replace("\\", "\\\\") + '"'

    lines = ["Windows Registry Editor Version 5.00"]
    for key, values in keys.items():
        lines += ["", f"[{key}]"] + [(f'"{name}"' if name else "@") + f"={value(v)}" for name, v in values.items()]
    return ("\r\n".join(lines) + "\r\n").encode("utf-16")


def import_registry(keys, env):
    """Writes {key: {name: text or number}} into the prefix that `env` names."""
    with tempfile.NamedTemporaryFile(suffix=".reg") as file:
        file.write(registry_text(keys))
        file.flush()
        subprocess.run(["wine", "regedit", "/S", "Z:" + file.name.replace("/", "\\")], env=env, check=True,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def base_environment(prefix, locale="ja_JP"):
    """Environment of a Wine program without display and sound; `locale` decides the code page (ja_JP 932, en_US 1252)."""
    env = {name: value for name, value in os.environ.items()
           if not name.startswith(("LC_", "WINE", "PULSE_")) and name not in ("LANG", "LANGUAGE", "DISPLAY")}
    env.update(WINEPREFIX=str(prefix), WINEDEBUG="fixme-all,err-all", LC_ALL=f"{locale}.UTF-8", LOCPATH=str(_locales()),
               WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe=",
               GST_REGISTRY=str(cache_dir() / "gstreamer-registry.bin"))
    return env


def _locked(name):
    file = open(cache_dir() / name, "w")
    fcntl.flock(file, fcntl.LOCK_EX)
    return file


def _locales():
    folder = cache_dir() / "locales"
    missing = [name for name in LOCALES if not (folder / f"{name}.UTF-8").is_dir()]
    if missing:
        with _locked("locales.lock"):
            folder.mkdir(exist_ok=True)
            for name in missing:
                unfinished = folder / f"{name}.part"
                shutil.rmtree(unfinished, ignore_errors=True)
                # localedef returns 1 for mere warnings
                subprocess.run(["localedef", "-i", name, "-f", "UTF-8", str(unfinished)], stderr=subprocess.DEVNULL)
                unfinished.rename(folder / f"{name}.UTF-8")
    return folder


def ready_prefix():
    """The prepared prefix; made on first use, which takes about 15 seconds."""
    version = subprocess.run(["wine", "--version"], capture_output=True, check=True, env=os.environ | {"WINEDEBUG": "-all"})
    key = hashlib.sha256(version.stdout + pathlib.Path(__file__).read_bytes()).hexdigest()[:12]
    prefix = cache_dir() / f"wine-{key}"
    if prefix.is_dir():
        return prefix
    with _locked("wine.lock"):
        if prefix.is_dir():
            return prefix
        unfinished = cache_dir() / f"wine-{key}.part"
        shutil.rmtree(unfinished, ignore_errors=True)
        unfinished.mkdir()
        env = base_environment(unfinished)
        env["HOME"] = str(unfinished)
        subprocess.run(["wine", "wineboot", "-i"], env=env, check=True, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        import_registry(_REGISTRY, env)
        subprocess.run(["wineserver", "-k"], env=env)
        subprocess.run(["wineserver", "-w"], env=env)
        _unlink_home(unfinished)
        for font in _WINE_FONTS.glob("*.ttf"):
            shutil.copy2(font, unfinished / "drive_c/windows/Fonts")
        unfinished.rename(prefix)
    return prefix


def _unlink_home(prefix):
    """Turns the user's folders (desktop, documents ...), links into the home folder, into folders of the prefix."""
    for folder in prefix.glob("drive_c/users/*/*"):
        if folder.is_symlink():
            folder.unlink()
            folder.mkdir()


def _link_or_copy(source, target):
    if pathlib.Path(source).suffix.lower() in _SHARED_SUFFIXES:
        try:
            os.link(source, target)
            return
        except OSError:  # another file system
            pass
    shutil.copy2(source, target)


def clone_prefix(target):
    """Copies the prepared prefix to `target`, which must not exist yet."""
    shutil.copytree(ready_prefix(), target, symlinks=True, copy_function=_link_or_copy)
    return pathlib.Path(target)
