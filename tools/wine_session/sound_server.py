"""A private PulseAudio that plays to nowhere and whose output can be recorded."""

import os
import pathlib
import subprocess

from . import processes

RATE = 44100  # frames per second of what is recorded: 16-bit stereo


class SilentSoundServer:
    """PulseAudio with one null sink in `runtime`, a private folder with a short path (its socket lives there)."""

    def __init__(self, runtime, log=subprocess.DEVNULL):
        self._runtime = pathlib.Path(runtime)
        self._log = log
        self._recorder = None
        socket = self._runtime / "pulse.socket"
        self.env = {"PULSE_SERVER": f"unix:{socket}", "PULSE_RUNTIME_PATH": str(runtime), "PULSE_STATE_PATH": str(runtime),
                    "PULSE_COOKIE": str(self._runtime / "cookie"), "XDG_RUNTIME_DIR": str(runtime)}
        self._process = processes.start(
            ["pulseaudio", "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1", "--disable-shm=yes",
             "-L", f"module-native-protocol-unix socket={socket} auth-anonymous=1",
             "-L", f"module-null-sink sink_name=null rate={RATE} channels=2 format=s16le"],
            env=os.environ | self.env, stdout=log, stderr=log, stdin=subprocess.DEVNULL)

        def up():
            if self._process.poll() is not None:
                raise processes.StartFailure("pulseaudio ended at once")
            return socket.exists()
        processes.wait_until(up, 20, "pulseaudio offers its socket")
        processes.prefer(self._process.pid)  # it gives up at its start what it was started with

    def record(self, path):
        """Records everything played from now on to `path`, raw; returns when the first samples have arrived.

        A recorder also steadies the sink's clock, which is irregular without one.
        """
        with open(path, "wb") as out:
            self._recorder = processes.start(
                ["parec", "-d", "null.monitor", "--raw", "--format=s16le", f"--rate={RATE}", "--channels=2",
                 "--latency-msec=20"], env=os.environ | self.env, stdout=out, stderr=self._log, stdin=subprocess.DEVNULL)
        processes.wait_until(lambda: os.path.getsize(path) > 0, 20, "recording has begun")

    def signal(self, number):
        """Stops (SIGSTOP) the server as if it hung, and lets it go on (SIGCONT)."""
        self._process.send_signal(number)

    def close(self):
        processes.stop(self._recorder)
        processes.stop(self._process)
