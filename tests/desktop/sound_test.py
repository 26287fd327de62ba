"""What the sound server plays when a phase ends."""

import array
import signal
import socket
import time

import dbus

from harness import REFERENCE_DATE, DesktopTest, holds_for, main, wait_for

RATE = 48000
SLICE = RATE // 20  # 50 ms
AUDIBLE = 200  # of 32767

# Where the window has that button of a phase that waits, in pixels from its corner.
START_BREAK = (513, 578)


class Sound(DesktopTest):
    def start_server(self):
        """A PulseAudio with one output that nobody hears, and a recording of it."""
        desktop = self.desktop
        desktop.environment["PULSE_SERVER"] = f"unix:{self.server_socket()}"
        desktop.run_in_background(["pulseaudio", "-n", "-L", "module-native-protocol-unix", "-L",
                                   "module-null-sink sink_name=test", "--exit-idle-time=-1"])
        wait_for("a sound server", lambda: "test" in desktop.ask("pactl", "list", "short", "sinks"))
        self.recording = desktop.folder / "recording"
        desktop.run_in_background(["sh", "-c", "exec parec -d test.monitor --latency-msec=20 --format=s16le "
                                   f"--rate={RATE} --channels=1 >{self.recording}"])
        wait_for("a recording", lambda: self.recording.exists() and self.recording.stat().st_size > 0)

    def server_socket(self):
        return self.desktop.folder / "runtime" / "pulse" / "native"

    def hang_server(self):
        """A sound server that takes connections and says nothing."""
        server = socket.socket(socket.AF_UNIX)
        self.addCleanup(server.close)
        self.server_socket().parent.mkdir(mode=0o700)
        server.bind(str(self.server_socket()))
        server.listen()
        self.desktop.environment["PULSE_SERVER"] = f"unix:{self.server_socket()}"

    def processes(self, program):
        """Of the program and of what it has started, also when it is gone itself."""
        return self.desktop.ask("pgrep", "-g", str(program.pid), "-r", "R,S,D").split()

    def loudness(self):
        """The loudest sample of each 50 ms since the recording began."""
        data = self.recording.read_bytes()
        samples = array.array("h", data[:len(data) // 2 * 2])
        return [max(map(abs, samples[start:start + SLICE])) for start in range(0, len(samples) - SLICE, SLICE)]

    def is_silent(self):
        return max(self.loudness()[-6:], default=0) <= AUDIBLE

    def end_a_phase(self, intensity):
        self.desktop.set_preferences(focus=2, sound=True, intensity=intensity)
        self.program, window = self.start_and_wait()
        self.desktop.start_phase()
        self.desktop.wait_for_state("ringing")
        return window

    def test_a_standard_alert_is_one_sound(self):
        self.start_server()
        self.end_a_phase("standard")
        wait_for("a sound", lambda: not self.is_silent(), 3)
        wait_for("its end", self.is_silent, 5)
        length_so_far = len(self.loudness())
        wait_for("two more seconds", lambda: len(self.loudness()) > length_so_far + 40)
        audible = [value > AUDIBLE for value in self.loudness()]
        begin = audible.index(True)
        end = len(audible) - audible[::-1].index(True)
        self.assertTrue(all(audible[begin:end]), "the sound has a gap, or it was played twice")
        self.assertTrue(0.5 <= (end - begin) / 20 <= 2.5, f"it lasted {(end - begin) / 20} s")
        self.assertLess(max(self.loudness()), 32000, "it is loud enough to be distorted")

    def test_a_strong_alert_repeats_until_the_user_acts(self):
        self.start_server()
        window = self.end_a_phase("strong")
        wait_for("a sound", lambda: not self.is_silent(), 3)
        begin = len(self.loudness())
        wait_for("repeated sounds", lambda: len(self.loudness()) > begin + 100, 10)
        self.assertFalse(self.is_silent(), "after five seconds it has stopped by itself")
        _, _, width, height = self.desktop.geometry(window)
        # The middle one of the three buttons below the ring skips the pending phase.
        self.desktop.click(window, width // 2, height - 74)
        wait_for("a prepared focus phase", lambda: self.desktop.timer()["phase"] == "focus")
        acted = len(self.loudness())
        wait_for("silence", self.is_silent, 3)
        loud = [number for number, value in enumerate(self.loudness()) if value > AUDIBLE]
        self.assertLessEqual((loud[-1] - acted) * SLICE, 0.05 * RATE, "it is silent within a tenth of a second")

    def answers_promptly(self):
        begin = time.monotonic()
        self.desktop.bus().call_blocking("com.quillmark.Brevlin", "/StatusNotifierItem", dbus.PROPERTIES_IFACE, "Get",
                                         "ss", ["", "Title"])
        return time.monotonic() - begin < 0.1

    def test_a_hung_sound_server_holds_nothing_up_and_the_next_sound_is_tried_again(self):
        self.hang_server()
        window = self.end_a_phase("strong")
        holds_for("an answer within 100 ms", self.answers_promptly, 3)
        record, = self.desktop.wait_for_records(1)
        written = (self.desktop.data / "sessions-v1.json").stat().st_mtime - REFERENCE_DATE
        self.assertLess(written - record["endedAt"], 0.1)
        wait_for("the attempt given up", lambda: len(self.processes(self.program)) == 1, 1)
        self.server_socket().unlink()
        self.start_server()
        self.desktop.click(window, *START_BREAK)
        wait_for("a sound", lambda: not self.is_silent(), 6)

    def check_that_nothing_is_left(self, number, code):
        self.end_a_phase("strong")
        wait_for("an attempt", lambda: len(self.processes(self.program)) > 1, 1)
        begin = time.monotonic()
        self.assertEqual(self.desktop.stop(self.program, number), code)
        self.assertLess(time.monotonic() - begin, 0.5)
        wait_for("nothing that is left", lambda: not self.processes(self.program), 0.5)

    def test_a_hung_sound_server_does_not_delay_quitting(self):
        self.hang_server()
        self.check_that_nothing_is_left(signal.SIGTERM, 0)

    def test_the_sound_of_a_killed_program_ends_with_it(self):
        self.start_server()
        self.check_that_nothing_is_left(signal.SIGKILL, -signal.SIGKILL)


if __name__ == "__main__":
    main()
