"""What users download: the zip plays from any folder, the installer installs, replaces, associates and removes."""

import filecmp
import hashlib
import re
import shutil
import subprocess
import zipfile

from wine_harness.scenario import ROOT, real_time
from wine_session.prefix import import_registry

PACKAGES = ROOT / "build/packages"
DEMO = ROOT / "demo/quenlox-demo.mp3"
TITLE = "Quenlox  Ver *"
APPS = r"HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\Quenlox"
CLASSES = r"HKCU\Software\Classes"
IN_USE = 2
NEXT = 1  # the command of the installer's button that goes on


def package(pattern):
    found = [path for path in PACKAGES.glob(pattern) if not path.stem.endswith(("-source", "-symbols"))]
    assert len(found) == 1, f"one {pattern} in {PACKAGES}, made by packaging/build.sh: {found}"
    return found[0]


def unpacked(s, folder):
    with zipfile.ZipFile(package("*.zip")) as file:
        file.extractall(folder)
    return folder / "Quenlox"


def installed(s):
    """The folder of the installation, whether it is there or not."""
    user = next(p for p in (s.session.prefix / "drive_c/users").iterdir() if p.name != "Public")
    return user / "AppData/Local/Programs/Quenlox"


def start_menu(s):
    return installed(s).parents[2] / "Roaming/Microsoft/Windows/Start Menu/Programs/Quenlox.lnk"


def desktop(s):
    return installed(s).parents[3] / "Desktop/Quenlox.lnk"


def run(s, program, *arguments):
    return s.start(program, *arguments).wait_exit(60)


def pretend_oldest(s):
    """Shows programs the oldest system that is supported."""
    import_registry({r"HKEY_CURRENT_USER\Software\Wine": {"Version": "win10"}}, s.session.env)


def setup(s, *arguments, expected=0):
    pretend_oldest(s)
    s.equal(run(s, package("*-setup.exe"), "/S", *arguments), expected, "exit code of the installer")


def uninstall(s, *arguments):
    folder = installed(s)
    run(s, folder / "uninstall.exe", "/S", *arguments)  # goes on in a copy of itself
    s.wait_until(lambda: not start_menu(s).exists() and registry(s, APPS) == {}, "it is uninstalled")
    s.wait_until(lambda: not (folder / "uninstall.exe").exists(), "the uninstaller is gone")


def registry(s, key):
    """{key: {name: value}} of everything below a key, empty when it does not exist."""
    process = s.session.start("reg", "query", key, "/s", stdout=subprocess.PIPE)
    output = process.communicate(timeout=30)[0].decode("cp932", "replace")
    found, values = {}, None
    for line in output.splitlines() if process.returncode == 0 else []:
        if line.startswith("HKEY_"):
            values = found.setdefault(line.strip().replace("HKEY_CURRENT_USER", "HKCU"), {})
        elif match := re.match(r"    (.*?)    REG_\w+ {0,4}(.*)", line):
            values[match[1]] = match[2].strip()
    return found


def files_of(folder):
    return {str(p.relative_to(folder)) for p in folder.rglob("*") if p.is_file()}


def write_own(folder):
    """What a user has beside the program; returns the names."""
    own = {"Quenlox.ini", "Quenlox.m3u", "skin/mine/mine.tsk"}
    for name in own:
        (folder / name).parent.mkdir(exist_ok=True)
        (folder / name).write_text("mine")
    return own


def plays(s, start):
    """Runs `start`, which starts the program; hears the tune; closes the program."""
    mark = s.sound_mark()
    program = start()
    window = s.driver.wait_window(title=TITLE)
    s.wait_sound(since=mark)
    assert s.captured(mark).trimmed().rms() > 0.01
    window.close()
    s.equal(program.wait_exit(), 0, "exit code")


def test_every_licence_that_a_notice_names_is_there_and_every_source(s):
    licences = unpacked(s, s.material) / "licences"
    for name, words in {"LGPL-2.1": "Version 2.1, February 1999", "LGPL-2": "GNU LIBRARY GENERAL PUBLIC LICENSE", "GPL-3": "29 June 2007",
                        "mpg123-COPYING": "Michael Hipp", "lame": "fft.c", "nsis": "Nullsoft", "soundtouch": "", "kissfft-COPYING": "",
                        "gcc-runtime": "GCC RUNTIME LIBRARY EXCEPTION", "mingw-w64-runtime": "winpthreads"}.items():
        assert words in (licences / f"{name}.txt").read_text("utf-8"), f"{words!r} in {name}"
    for notice in licences.glob("*.txt"):
        for name in re.findall(r"/common-licenses/([\w.-]*\w)", notice.read_text("utf-8", "replace")):
            assert (licences / f"{name}.txt").exists(), f"{notice.name} refers to {name}"
    with zipfile.ZipFile(next(PACKAGES.glob("*-source.zip"))) as archive:
        sources = {hashlib.sha256(archive.read(name)).hexdigest() for name in archive.namelist()}
    for line in (licences / "sources.sha256").read_text().splitlines():
        assert line.split()[0] in sources, line


@real_time
def test_the_zip_plays_from_a_folder_with_a_japanese_name(s):
    folder = unpacked(s, s.dir / "携帯プレーヤー")
    before = files_of(folder)
    assert not {"Quenlox.ini", "Quenlox.m3u"} & before
    plays(s, lambda: s.start_product(DEMO, folder=folder))
    s.equal(files_of(folder) - before, {"Quenlox.ini"}, "new files")


def test_the_installer_speaks_japanese_and_installs_for_this_user_alone(s):
    pretend_oldest(s)
    program = s.start(package("*-setup.exe"))
    language = s.driver.wait_window(class_name="#32770")
    s.equal(language.control("ComboBox").lines()[0:2], ["English", "日本語"], "languages")
    s.equal(language.control("ComboBox").selected_line(), "日本語", "the system's language")
    s.screenshot("language", language)
    language.command(NEXT)
    window = s.driver.wait_window(title="Quenlox セットアップ*")
    for number, expected in enumerate(("Quenloxはフリーソフトウェアです", "構成要素の選択", "インストール先の選択")):
        window.wait_text(expected)
        s.screenshot(f"page-{number}", window)
        window.command(NEXT)
    window.wait_text("Quenlox を実行", limit=60)
    s.screenshot("page-last", window)
    window.command(NEXT)
    player = s.driver.wait_window(title=TITLE)
    player.close()
    s.equal(program.wait_exit(), 0, "exit code")
    s.wait_until(lambda: not s.driver.find(title=TITLE), "it has closed")

    folder, zipped = installed(s), unpacked(s, s.material)
    s.equal(files_of(folder) - files_of(zipped), {"uninstall.exe", "Quenlox.ini"}, "files besides those of the zip")
    s.equal(filecmp.cmpfiles(folder, zipped, files_of(zipped), shallow=False)[1:], ([], []), "files unlike those of the zip")
    entry = registry(s, APPS)[APPS]
    s.equal((entry["DisplayName"], entry["Publisher"]), ("Quenlox", "Quenlox"), "entry of the list of programs")
    assert package("*.zip").name == f"Quenlox-{entry['DisplayVersion']}.zip", entry
    size = sum((zipped / name).stat().st_size for name in files_of(zipped))
    s.near(int(entry["EstimatedSize"], 0), size / 1024, 1, "size in KB")
    assert start_menu(s).exists() and not desktop(s).exists()
    s.equal(registry(s, CLASSES), {}, "associations nobody asked for")


@real_time
def test_a_running_program_is_noticed_and_goes_on(s):
    setup(s)
    mark = s.sound_mark()
    s.start_product(DEMO, folder=installed(s))
    window = s.driver.wait_window(title=TITLE)
    s.wait_sound(since=mark)
    setup(s, expected=IN_USE)
    assert s.driver.find(title=TITLE)
    s.wait_sound()
    window.close()


@real_time
def test_associations_are_made_on_request_and_taken_back(s):
    setup(s, "/NOASSOC")
    run(s, "reg", "delete", CLASSES, "/f")
    import_registry({CLASSES.replace("HKCU", "HKEY_CURRENT_USER") + r"\.mp3": {"Content Type": "audio/mpeg"},
                     CLASSES.replace("HKCU", "HKEY_CURRENT_USER") + r"\.wav\OpenWithProgids": {"Another.wav": ""}},
                    s.session.env)
    s.equal(run(s, "reg", "add", CLASSES + r"\.mp3", "/ve", "/d", "Another.mp3", "/f"), 0, "exit code")
    before = registry(s, CLASSES)
    setup(s, "/ASSOC")
    now = registry(s, CLASSES)
    for extension, kind in {"mp3": "mpeg", "rmp": "rmp", "wav": "wave", "rmi": "midi", "wma": "wma", "cda": "cda"}.items():
        values = [value for key in (fr"{CLASSES}\.{extension}", fr"{CLASSES}\Quenlox.{kind}\shell\open\command")
                  for value in now[key].values()]
        assert f"Quenlox.{kind}" in values and any(r'Quenlox\Quenlox.exe" "%1"' in v for v in values), values
    # Wine itself looks for classes in the machine's part only, so the command is carried out as Windows would.
    command = next(iter(now[CLASSES + r"\Quenlox.mpeg\shell\open\command"].values()))
    program, argument = re.fullmatch(r'"(.*)" "(.*)"', command).groups()
    plays(s, lambda: s.start(program, argument.replace("%1", s.windows_path(DEMO))))

    setup(s)  # an update leaves them as they are
    s.equal(registry(s, CLASSES), now, "associations after an update")
    # Meanwhile another program has taken one of them, which it keeps.
    s.equal(run(s, "reg", "add", CLASSES + r"\.rmp", "/ve", "/d", "Another.rmp", "/f"), 0, "exit code")
    setup(s, "/NOASSOC")
    after = registry(s, CLASSES)
    s.equal(list(after.pop(CLASSES + r"\.rmp").values()), ["Another.rmp"], "the one that is another's now")
    s.equal(after, before, "classes")
    assert "Quenlox" not in str(registry(s, r"HKCU\Software\RegisteredApplications"))


def test_a_newer_version_takes_the_place_of_an_older_one(s):
    uninstall(s, "/DELETEUSER") if installed(s).exists() else None
    old = s.material / "old"
    for name in ("Quenlox.exe", "left.dll", "skin/gone/gone.tsk"):
        (old / name).parent.mkdir(parents=True, exist_ok=True)
        (old / name).write_text("of the old version")
    subprocess.run([ROOT / "packaging/installer/make.sh", old, "0.9.0", s.material], check=True, stdout=subprocess.DEVNULL)
    s.equal(run(s, s.material / "Quenlox-0.9.0-setup.exe", "/S", "/DESKTOP"), 0, "exit code")
    folder = installed(s)
    own = write_own(folder)
    setup(s)
    zipped = unpacked(s, s.material)
    s.equal(files_of(folder), files_of(zipped) | {"uninstall.exe", *own}, "files")
    s.equal({(folder / name).read_text() for name in own}, {"mine"}, "what stands in the user's files")
    assert registry(s, APPS)[APPS]["DisplayVersion"] != "0.9.0"
    assert start_menu(s).exists() and desktop(s).exists()


def test_removing_leaves_what_is_the_users_unless_told_otherwise(s):
    setup(s, "/ASSOC")
    folder = installed(s)
    own = write_own(folder)
    run(s, folder / "uninstall.exe")  # goes on in a copy of itself
    window = s.driver.wait_window(title="Quenlox アンインストール*")
    window.wait_text("構成要素の選択")
    s.screenshot("uninstall", window)
    window.command(NEXT)
    window.wait_text("アンインストールに成功しました")
    window.command(NEXT)
    window.wait_closed()
    s.equal(files_of(folder), own, "what stays")
    assert not desktop(s).exists()
    s.equal(registry(s, r"HKCU\Software\Quenlox"), {}, "keys of its own")
    assert "Quenlox" not in str(registry(s, CLASSES)), registry(s, CLASSES)

    shutil.rmtree(folder / "skin/mine")
    setup(s)
    left = [folder.parents[1] / "Quenlox/crash/Quenlox-1.dmp", folder.parents[2] / "Roaming/Quenlox/Quenlox.ini"]
    for path in left:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text("mine")
    uninstall(s, "/DELETEUSER")
    s.wait_until(lambda: not any(path.exists() for path in (folder, left[0].parents[1], left[1].parent)), "the folders are gone")
