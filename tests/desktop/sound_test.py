"""What the sound server plays when a phase ends."""

import array
import os
import time

from harness import DesktopTest, main, wait_for

RATE = 48000
SLICE = RATE // 20  # 50 ms
AUDIBLE = 200  # of 32767


class Sound(DesktopTest):
    def start_server(self):
        """A PulseAudio with one output that nobody hears, and a recording of it."""
        desktop = self.desktop
        runtime = desktop.folder / "runtime"
        desktop.environment["PULSE_SERVER"] = f"unix:{runtime}/pulse/native"
        desktop.run_in_background(["pulseaudio", "-n", "-L", "module-native-protocol-unix", "-L",
                                   "module-null-sink sink_name=test", "--exit-idle-time=-1"])
        wait_for("a sound server", lambda: "test" in desktop.ask("pactl", "list", "short", "sinks"))
        self.recording = desktop.folder / "recording"
        desktop.run_in_background(["sh", "-c", "exec parec -d test.monitor --latency-msec=20 --format=s16le "
                                   f"--rate={RATE} --channels=1 >{self.recording}"])
        wait_for("a recording", lambda: self.recording.exists() and self.recording.stat().st_size > 0)

    def loudness(self):
        """The loudest sample of each 50 ms since the recording began."""
        data = self.recording.read_bytes()
        samples = array.array("h", data[:len(data) // 2 * 2])
        return [max(map(abs, samples[start:start + SLICE])) for start in range(0, len(samples) - SLICE, SLICE)]

    def is_silent(self):
        return max(self.loudness()[-6:], default=0) <= AUDIBLE

    def end_a_phase(self, intensity):
        self.desktop.set_preferences(focus=2, sound=True, intensity=intensity)
        _, window = self.start_and_wait()
        self.desktop.press("space")
        self.desktop.wait_for_state("running")
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
        self.desktop.click(window, width // 2, height - 96)
        wait_for("a prepared focus phase", lambda: self.desktop.timer()["phase"] == "focus")
        acted = time.monotonic()
        wait_for("silence", self.is_silent, 3)
        self.assertLess(time.monotonic() - acted, 1.0, "0.3 s of silence come within a second")

    def audible_length(self, *arguments):
        """Plays a strong alert with these arguments of the player; gives the seconds from its first to its last sound."""
        self.start_server()
        player = self.desktop.run_in_background([os.environ["BREVLIN_ALERT_PLAYER"], *arguments])
        self.assertEqual(player.wait(timeout=20), 0)
        audible = [value > AUDIBLE for value in self.loudness()]
        return (len(audible) - audible[::-1].index(True) - audible.index(True)) * SLICE / RATE

    def test_a_strong_alert_ends_by_itself_at_its_limit(self):
        # The sounds follow one another with a faint end each, so that the last one may end up to that much earlier.
        self.assertTrue(3.0 <= self.audible_length("4") <= 4.2)

    def test_a_stopped_alert_is_silent_within_a_tenth_of_a_second(self):
        # In the middle of the second sound, where it is loud. Two slices more for where they begin and end.
        length = self.audible_length("60", "2.0")
        self.assertTrue(1.9 <= length <= 2.0 + 0.1 + 2 * SLICE / RATE, f"it lasted {length} s")

    def test_without_a_sound_server_the_timer_goes_on(self):
        self.desktop.environment["PULSE_SERVER"] = f"unix:{self.desktop.folder}/no-sound-server"
        self.end_a_phase("strong")
        self.desktop.wait_for_records(1)
        self.desktop.press("F11")
        self.desktop.press("F11")
        self.assertEqual(len(self.desktop.windows()), 1)


if __name__ == "__main__":
    main()
