"""The rule for the devices: which ones udev gives to the group. udev itself reads it, with devices of our own in /sys.

udev_rule_test.py RULE-FILE
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

RULE = pathlib.Path(sys.argv[1]).resolve()
# The line for a program that udev would run: as it was up to version 255, and as it is since.
GRANT = re.compile(r"^(?:run: '|  RUN\{program\} : )/usr/bin/setfacl -m g:krvcmd:rw ([^\s']+)'?$", re.MULTILINE)


def udevadm():
    return shutil.which("udevadm", path=os.environ["PATH"] + ":/usr/sbin:/sbin:/usr/bin:/bin")


def can_close_off():
    return udevadm() and shutil.which("bwrap") and subprocess.run(
        ["bwrap", "--dev-bind", "/", "/", "true"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
        check=False).returncode == 0


@unittest.skipUnless(can_close_off(), "needs udevadm and bwrap")
class DeviceRule(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="udev-rule-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        for part in ("sys/bus/scsi", "sys/class/scsi_generic", "sys/class/block", "rules", "none"):
            (self.folder / part).mkdir(parents=True)
        shutil.copy(RULE, self.folder / "rules/60-krvcmd-jukebox.rules")

    def add_device(self, kind, subsystem="scsi_generic", name="sg7", numbers="21:7"):
        """A SCSI device of this type (SPC-4, table 151), as Linux shows it, with a device node; returns its path."""
        unit = self.folder / "sys/devices/pci0/host0/target0:0:0/0:0:0:0"
        node = unit / subsystem / name
        node.mkdir(parents=True)
        (unit / "type").write_text(f"{kind}\n", encoding="ascii")
        (unit / "uevent").write_text(f"DEVTYPE=scsi_device\nMODALIAS=scsi:t-0x{kind:02x}\n", encoding="ascii")
        (unit / "subsystem").symlink_to("/sys/bus/scsi")
        major, minor = numbers.split(":")
        (node / "uevent").write_text(f"MAJOR={major}\nMINOR={minor}\nDEVNAME={name}\n", encoding="ascii")
        (node / "dev").write_text(f"{numbers}\n", encoding="ascii")
        (node / "subsystem").symlink_to(f"/sys/class/{subsystem}")
        (node / "device").symlink_to("/sys/devices/pci0/host0/target0:0:0/0:0:0:0")
        return "/sys/" + str(node.relative_to(self.folder / "sys"))

    def ask(self, device, action="add"):
        """What udev says that it would do; no rule but this one is there."""
        done = subprocess.run(
            ["bwrap", "--dev-bind", "/", "/", "--dev", "/dev", "--bind", str(self.folder / "sys"), "/sys", "--tmpfs",
             "/run", "--bind", str(self.folder / "rules"), "/run/udev/rules.d", "--bind", str(self.folder / "none"),
             str(pathlib.Path("/lib/udev/rules.d").resolve()), "--setenv", "SYSTEMD_DEVICE_VERIFY_SYSFS", "0", "--",
             udevadm(), "test", f"--action={action}", device], text=True, capture_output=True, check=False)
        self.assertEqual(done.returncode, 0, done.stderr)
        said = done.stdout + done.stderr
        self.assertIn("krvcmd-jukebox.rules", said)
        self.assertNotRegex(said, r"krvcmd-jukebox\.rules:\d+.*(Invalid|Unknown|ignoring)")
        return said

    def granted(self, device, action="add"):
        return GRANT.findall(self.ask(device, action))

    def test_gives_changers_and_optical_drives_to_the_group(self):
        for kind in (5, 7, 8):
            with self.subTest(kind=kind):
                self.assertEqual(self.granted(self.add_device(kind)), ["/dev/sg7"])
                shutil.rmtree(self.folder / "sys/devices")

    def test_gives_no_other_device_to_it(self):
        for kind in (0, 1, 3, 12, 13, 14):
            with self.subTest(kind=kind):
                self.assertEqual(self.granted(self.add_device(kind)), [])
                shutil.rmtree(self.folder / "sys/devices")

    def test_gives_the_generic_device_only(self):
        self.assertEqual(self.granted(self.add_device(5, "block", "sr0", "11:0")), [])

    def test_works_for_devices_that_are_there_already_and_not_for_those_that_go(self):
        device = self.add_device(8)
        self.assertEqual(self.granted(device, "change"), ["/dev/sg7"])
        self.assertEqual(self.granted(device, "remove"), [])


unittest.main(argv=sys.argv[:1], verbosity=2)
