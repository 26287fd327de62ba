"""The user's own programs, told of each transition: those that the documentation offers."""

import http.server
import json
import os
import pathlib
import shutil
import threading

from harness import PROGRAM, DesktopTest, main, wait_for, wait_for_equal

EXAMPLES = pathlib.Path(__file__).parents[2] / "docs" / "hooks"


class Receiver(http.server.BaseHTTPRequestHandler):
    """Keeps what is sent to it."""

    def do_POST(self):
        body = self.rfile.read(int(self.headers["Content-Length"]))
        self.server.received.append((self.path, json.loads(body)))
        self.send_response(204)
        self.end_headers()

    def log_message(self, *arguments):
        pass


class Hooks(DesktopTest):
    def setUp(self):
        super().setUp()
        self.server = http.server.HTTPServer(("127.0.0.1", 0), Receiver)
        self.server.received = []
        threading.Thread(target=self.server.serve_forever, daemon=True).start()
        self.addCleanup(self.server.server_close)
        self.addCleanup(self.server.shutdown)
        address = f"http://127.0.0.1:{self.server.server_port}"
        self.desktop.environment.update(LAMP_URL=address + "/lamp", STATUS_URL=address + "/status", no_proxy="*")
        self.folder = self.desktop.config / "hooks"

    def received(self, path):
        return [body for each, body in self.server.received if each == path]

    def test_the_examples_log_light_a_lamp_and_set_a_status_and_one_that_hangs_holds_nothing_up(self):
        desktop = self.desktop
        desktop.set_preferences(focus=1500, language="english")
        self.folder.mkdir(mode=0o700)
        for example in EXAMPLES.iterdir():
            if example.name != "README.md":
                shutil.copy(example, self.folder)
        process = desktop.run_in_background([PROGRAM, "--background"])
        wait_for("an answer", lambda: desktop.ask(PROGRAM, "status"))
        desktop.ask(PROGRAM, "start", "--intention", "R&D <b>")
        desktop.ask(PROGRAM, "pause")
        desktop.ask(PROGRAM, "resume")
        desktop.ask(PROGRAM, "stop")
        wait_for_equal(["red", "green", "red", "green"], "the lamp",
                       lambda: [body["color"] for body in self.received("/lamp")])
        # A slow hook may meet a timer that has gone on; the text is the one of the event.
        wait_for("the status", lambda: len(self.received("/status")) == 4)
        first = self.received("/status")[0]
        self.assertEqual(first["text"], "R&D <b>")
        self.assertIsNotNone(first["until"])
        self.assertEqual(self.received("/status")[-1], {"text": "", "until": None})
        line = (desktop.home / "brevlin.tsv").read_text().rstrip("\n").split("\t")
        self.assertEqual((line[1], line[2], line[4]), ("focus", "endedEarly", "R&D <b>"))

        for hook in self.folder.iterdir():
            hook.unlink()
        hang = self.folder / "hang"
        hang.write_text(f"#!/bin/sh\necho $$ >{desktop.folder}/hanging; sleep 60\n")
        hang.chmod(0o700)
        desktop.ask(PROGRAM, "start")
        identifier = int(wait_for("a hook that hangs", lambda: (desktop.folder / "hanging").exists()
                                  and (desktop.folder / "hanging").read_text()))
        desktop.ask(PROGRAM, "pause")
        self.assertIn('"paused"', desktop.ask(PROGRAM, "status", "--json"))
        self.assertEqual(desktop.stop(process), 0)
        self.assertFalse(os.path.exists(f"/proc/{identifier}"))


if __name__ == "__main__":
    main()
