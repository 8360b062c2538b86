"""Describes the machine of a measurement."""
import datetime
import os
import platform
import re
import subprocess


def first_line(*command):
    output = subprocess.run(command, check=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT).stdout.decode()
    return output.splitlines()[0].strip()


def field(path, pattern):
    with open(path) as file:
        found = re.search(pattern, file.read(), re.MULTILINE)
    return found[1] if found else "unknown"


def description(build):
    processor = field("/proc/cpuinfo", r"^model name\s*:\s*(.*)$")
    kibibytes = int(field("/proc/meminfo", r"^MemTotal:\s*(\d+)"))
    system = field("/etc/os-release", r'^PRETTY_NAME="(.*)"$')
    compiler = field(f"{build}/CMakeCache.txt", r"^CMAKE_CXX_COMPILER:[^=]*=(.*)$")
    flags = field(f"{build}/CMakeCache.txt", r"^CMAKE_CXX_FLAGS_RELEASE:[^=]*=(.*)$")
    return (f"Taken on {datetime.date.today().isoformat()}: {processor}, {os.cpu_count()} processors, "
            f"{kibibytes / 2**20:.0f} GiB; {system}, Linux {platform.release()}; {first_line(compiler, '--version')}, "
            f"{flags} and hardened; OpenSSL {first_line('openssl', 'version').split()[1]}, "
            f"Dovecot {first_line('/usr/sbin/dovecot', '--version').split()[0]}, "
            f"NodeJS {first_line('node', '--version')}, Python {platform.python_version()}. "
            f"Load before the run: {os.getloadavg()[0]:.1f}.\n")
