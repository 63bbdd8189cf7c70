#!/usr/bin/env python3
"""Writes macbook.trace.jsonl: twenty minutes of a laptop, invented but such as one would capture.

usage: make_trace.py [--check]

On battery; plugged in and charging; full; asleep; at a charger too weak for a heavy load, which makes the machine
hot; on battery again, cooling down. The same bytes come out every time: only sums, products and quotients are
used, and Python's random() with a fixed seed. With --check nothing is written: exit status 1 tells that the file
next to this script differs.
"""

import json
import random
import struct
import sys
from pathlib import Path

TRACE = Path(__file__).resolve().parent / "macbook.trace.jsonl"

STEP = 5  # seconds from tick to tick
PROCESS_STEP = 15
COMPILER = (1203, 1204)  # runs under heavy load only
HEAVY_LOAD = 0.5
START = 1741081200  # 2025-03-04T09:40:00Z
UPTIME = 86512.375
ENERGY_SECONDS = 0.1
PROCESS_SECONDS = 0.35

DESIGN_MAH = 6075
FULL_MAH = 5731
FIRST_MAH = 5640.0
CHARGED_MAH = FULL_MAH - 12

# (first second, adapter in watts or None, load from 0 to 1, asleep)
PHASES = [
    (0, None, 0.12, False),
    (120, None, 0.30, False),
    (200, None, 0.15, False),
    (300, 96, 0.15, False),
    (540, 96, 0.10, False),
    (660, 96, 0.0, True),
    (780, 20, 0.35, False),
    (840, 20, 1.0, False),
    (1050, None, 0.15, False),
]
END = 1200

# Channel, idle watts, watts at full load, nanojoules per count.
CHANNELS = [
    ("ECPU", 0.08, 0.9, 1_000_000), ("PCPU", 0.15, 14.0, 1_000_000), ("PCPU1", 0.1, 13.0, 1_000_000),
    ("CPU Energy", 0.4, 29.0, 1_000_000), ("GPU Energy", 0.25, 11.0, 1), ("ANE0", 0.0, 0.4, 1_000_000),
    ("DRAM0", 0.35, 3.2, 1_000_000), ("DCS0", 0.2, 1.1, 1_000_000), ("AMCC0", 0.12, 0.6, 1_000_000),
    ("DISP0", 0.3, 0.32, 1_000_000), ("DISPEXT0", 0.0, 0.0, 1_000_000), ("ISP0", 0.0, 0.0, 1_000_000),
    ("AVE0", 0.0, 0.1, 1_000_000), ("SOC_AON", 0.02, 0.02, 1_000_000), ("PCIE0", 0.01, 0.05, 1_000),
]

# Product, degrees above ambient when idle, further degrees at full heat.
SENSORS = (
    [(f"PMU tdie{n}", 14 + n % 4, 54 - 2 * (n % 5)) for n in range(1, 15)]
    + [(f"PMU tdev{n}", 10 + n % 3, 26 + n % 6) for n in range(1, 9)]
    + [(f"PMU2 tdie{n}", 13 + n % 4, 50 - 2 * (n % 5)) for n in range(1, 9)]
    + [("NAND CH0 temp", 11, 19), ("NAND CH1 temp", 11, 18)]
    + [("gas gauge battery", 6.3, 9), ("gas gauge battery", 6.1, 9), ("gas gauge battery", 5.9, 8.5)]
    + [("PMU TP0s", 12, 33), ("PMU TP1g", 13, 41), ("PMU TP2d", 11, 30), ("PMU TP3w", 8, 14)]
)

# Id, name, start, idle and busy milliseconds of CPU per second, wakeups per second, bytes per second, readable.
PROCESSES = [
    (0, None, 0, 0, 0, 0, 0, False),
    (1, "launchd", 41, 0.4, 1.1, 2, 900, False),
    (88, "logd", 907, 0, 0, 0, 0, False),
    (151, "WindowServer", 1311, 38, 95, 62, 0, False),
    (412, "Finder", 20911, 0.3, 0.6, 1, 300, True),
    (437, "Dock", 21007, 0.4, 0.5, 2, 0, True),
    (519, "loginwindow", 18220, 0.1, 0.1, 0, 0, True),
    (633, "Music", 402117, 14, 15, 31, 41000, True),
    (702, "Safari", 511902, 22, 60, 45, 120000, True),
    (715, "com.apple.WebKit.WebContent", 512044, 41, 130, 70, 9000, True),
    (716, "com.apple.WebKit.GPU", 512047, 12, 40, 38, 0, True),
    (804, "Mail", 644910, 2, 5, 6, 15000, True),
    (921, "Terminal", 711310, 3, 9, 8, 200, True),
    (940, "zsh", 711602, 0, 0.1, 0, 0, True),
    (1203, "clang", 8123004, 0, 4100, 20, 6200000, True),
    (1204, "ld", 8123190, 0, 610, 9, 2400000, True),
]


def number(value, digits):
    """As the program's own writer spells it: without a fraction where there is none."""
    value = round(value, digits)
    return int(value) if value == int(value) else value


def entry(key, value):
    kind = {bool: "boolean", int: "integer", float: "double", str: "string", dict: "table"}[type(value)]
    return {"key": key, kind: table(value) if kind == "table" else value}


def table(values):
    return [entry(key, value) for key, value in values.items()]


class Laptop:
    """The state of the machine as it moves on in time."""

    def __init__(self):
        self.random = random.Random(20250304)
        self.charge = FIRST_MAH
        self.heat = 0.1  # from 0, idle, to 1
        self.fan = 0.0
        self.milliamperes = 0
        self.volts = 12.4
        self.counters = {pid: [37 * pid % 9000 * 1.0, 0.0, 0.0] for pid, *_ in PROCESSES}
        self.first_byte = {pid: 4096 * (pid % 977) for pid, *_ in PROCESSES}

    def around(self, value, share=0.05):
        return value * (1 + share * (2 * self.random.random() - 1))

    def move(self, seconds, adapter, load, asleep):
        self.load = 0 if asleep else self.around(load, 0.1)
        self.adapter = adapter
        target = 0 if asleep else load
        self.heat += (target - self.heat) * min(1, seconds / (70 if target > self.heat else 110))
        self.fan = 0 if self.heat < 0.2 else self.around(1499 + 4200 * min(1, (self.heat - 0.2) / 0.7), 0.01)
        self.flow(0.35 if asleep else self.system_watts())
        self.charge += self.milliamperes * seconds / 3600
        self.charge = min(self.charge, float(FULL_MAH))
        for pid, _, _, idle, busy, wakeups, written, _ in PROCESSES:
            is_idle = asleep or (pid in COMPILER and self.load < HEAVY_LOAD)
            share = 0 if is_idle else self.load
            counter = self.counters[pid]
            counter[0] += self.around(idle + (busy - idle) * share, 0.2) * seconds
            counter[1] += wakeups * (share + (0.4 if idle else 0)) * seconds
            counter[2] += written * share * seconds

    def system_watts(self):
        silicon = sum(idle + (full - idle) * self.load for name, idle, full, _ in CHANNELS
                      if name in ("CPU Energy", "GPU Energy", "ANE0", "DRAM0"))
        return silicon + self.around(6.1, 0.03)

    def flow(self, watts):
        """What goes into the battery, or out of it."""
        self.is_full = self.adapter == 96 and self.charge >= CHARGED_MAH
        if self.adapter is None:
            into = -watts
        elif self.is_full:
            into = 0
        else:
            room = (FULL_MAH - self.charge) / FULL_MAH
            into = min(self.adapter * 0.92 - watts, 12 + 1000 * room)
        self.volts = 12.15 + 0.6 * (self.charge / FULL_MAH - 0.9) * 5 + into * 0.006
        self.milliamperes = round(1000 * into / self.volts)

    def watts(self, idle, full):
        return self.around(idle + (full - idle) * self.load, 0.08)

    # What the sources answer.

    def smc(self):
        def key(name, kind, data):
            return {"key": name, "type": kind, "bytes": data.hex()}

        def speed(value):
            return struct.pack("<f", round(value))

        fans = [key("FNum", "ui8 ", bytes([2]))]
        for index, share in enumerate((1.0, 0.93)):
            fans += [key(f"F{index}Ac", "flt ", speed(self.fan * share)),
                     key(f"F{index}Mn", "flt ", speed(1499)),
                     key(f"F{index}Mx", "flt ", speed(5777 - 420 * index))]
        return fans

    def hid(self):
        services = [{"product": name, "temperature": number(24 + idle + full * self.heat + self.random.random(), 2)}
                    for name, idle, full in SENSORS]
        return services + [{"product": "PMU tcal", "temperature": 51.85}]

    def battery(self):
        percent = min(100, int(100 * self.charge / CHARGED_MAH))
        is_charging = self.adapter is not None and self.milliamperes > 0
        celsius = 30.2 + 9 * self.heat
        to_empty = round(60 * self.charge / -self.milliamperes) if self.milliamperes < 0 else 65535
        to_full = round(60 * (FULL_MAH - self.charge) / self.milliamperes) + 4 if is_charging else 65535
        adapter = {"FamilyCode": 0} if self.adapter is None else {
            "Watts": self.adapter, "AdapterVoltage": 20000 if self.adapter > 60 else 9000,
            "Current": self.adapter * 1000 // (20 if self.adapter > 60 else 9),
            "Name": f"{self.adapter}W USB-C Power Adapter", "SerialString": "redacted", "IsWireless": False,
            "FamilyCode": -536723446}
        registry = {
            "CurrentCapacity": percent, "MaxCapacity": 100, "DesignCapacity": DESIGN_MAH,
            "AppleRawCurrentCapacity": round(self.charge), "AppleRawMaxCapacity": FULL_MAH,
            "NominalChargeCapacity": FULL_MAH + 107, "CycleCount": 143, "DesignCycleCount9C": 1000,
            "Voltage": round(1000 * self.volts), "Amperage": self.milliamperes,
            "InstantAmperage": self.milliamperes + round(60 * (self.random.random() - 0.5)) * (not self.is_full),
            "Temperature": round(10 * (celsius + 273.15)), "VirtualTemperature": round(100 * (celsius + 0.4)),
            "ExternalConnected": self.adapter is not None, "IsCharging": is_charging, "FullyCharged": self.is_full,
            "BatteryInstalled": True, "AtCriticalLevel": False,
            "TimeRemaining": to_full if is_charging else to_empty if not self.is_full else 0,
            "AvgTimeToEmpty": to_empty, "AvgTimeToFull": to_full, "InstantTimeToEmpty": to_empty,
            "BatterySerialNumber": "redacted", "Serial": "redacted", "DeviceName": "bq40z651",
            "PostChargeWaitSeconds": 120, "AdapterDetails": adapter,
            "BatteryData": {"StateOfCharge": percent, "DesignCapacity": DESIGN_MAH, "Qmax": 6122},
        }
        source = {
            "Type": "InternalBattery", "Transport Type": "Internal", "Name": "InternalBattery-0",
            "Power Source State": "Battery Power" if self.adapter is None else "AC Power",
            "Hardware Serial Number": "redacted", "Current": self.milliamperes, "Max Capacity": 100,
            "Current Capacity": percent, "Is Present": True, "Is Charging": is_charging,
            "Time to Empty": to_empty if self.adapter is None else -1 if self.milliamperes < 0 else 0,
            "Time to Full Charge": to_full if is_charging else 0, "BatteryHealth": "Good", "Power Source ID": 7143523,
        }
        if self.adapter is not None and not is_charging:
            source["Is Charged"] = self.is_full
        return {"registry": table(registry), "powerSource": table(source)}

    def energy(self):
        channels = []
        for name, idle, full, count in CHANNELS:
            nanojoules = self.watts(idle, full) * ENERGY_SECONDS * 1e9
            channels.append({"name": name, "nanojoules": round(nanojoules / count) * count})
        return {"seconds": ENERGY_SECONDS, "channels": channels}

    def thermal(self):
        state = sum(self.heat > limit for limit in (0.55, 0.8))
        return {"stateCode": state, "pressureState": state, "isLowPowerMode": False}

    def processes(self):
        first = self.snapshot()
        before = {process["pid"]: process for process in first}
        self.move(PROCESS_SECONDS, self.adapter, self.load, False)
        second = []
        for process, (pid, name, *_) in zip(self.snapshot(), PROCESSES):
            readable = "user" in process
            if readable and process == before[pid]:
                process = {"pid": pid, "unchanged": True}
            second.append({"pid": pid, **({"name": name} if readable else {}), **process})
        return {"seconds": PROCESS_SECONDS, "first": first, "second": second}

    def snapshot(self):
        listed = []
        for pid, _, start, _, _, _, _, readable in reversed(PROCESSES):
            milliseconds, wakeups, written = self.counters[pid]
            listed.append({"pid": pid} if not readable else {
                "pid": pid, "user": round(milliseconds * 780_000), "system": round(milliseconds * 220_000),
                "idleWakeups": int(wakeups * 0.3), "interruptWakeups": int(wakeups), "bytesRead": self.first_byte[pid],
                "bytesWritten": int(written) // 4096 * 4096, "energy": round(milliseconds * 3_100_000),
                "startToken": start})
        return sorted(listed, key=lambda process: process["pid"])


def phase_at(second):
    return [phase for phase in PHASES if phase[0] <= second][-1]


def diagnosis(source, path):
    return {"source": source, "availability": "available", "reason": "An invented machine.", "path": path}


def lines():
    yield {"kind": "trace", "format": "quellin-trace", "majorVersion": 1, "minorVersion": 0, "createdAt": START,
           "redactsSerialNumbers": True, "diagnoses": {
               "smc": diagnosis("SMC", "AppleSMC"), "hid": diagnosis("Temperature sensors", "IOHIDEventSystem"),
               "battery": diagnosis("Battery", "AppleSmartBattery"),
               "energy": diagnosis("Energy counters", "libIOReport.dylib"),
               "thermal": diagnosis("Thermal state", "com.apple.system.thermalpressurelevel"),
               "processes": diagnosis("Processes", "libproc")}}
    laptop = Laptop()
    for second in range(0, END, STEP):
        _, adapter, load, asleep = phase_at(second)
        laptop.move(STEP, adapter, load, asleep)
        if asleep:
            continue
        late = number(laptop.random.random() * 0.02, 6)
        tick = {"kind": "tick", "wall": number(START + second + late, 6), "monotonic": number(UPTIME + second + late, 6),
                "smc": laptop.smc(), "hid": laptop.hid(), "battery": laptop.battery(), "energy": laptop.energy(),
                "thermal": laptop.thermal()}
        if second % PROCESS_STEP == 0:
            tick["processes"] = laptop.processes()
        yield tick


def main():
    text = "".join(json.dumps(line, separators=(",", ":"), ensure_ascii=False) + "\n" for line in lines())
    if sys.argv[1:] == ["--check"]:
        if TRACE.read_bytes() == text.encode():
            return 0
        print(f"{TRACE} is not what {Path(__file__).name} makes; run it without --check", file=sys.stderr)
        return 1
    if sys.argv[1:]:
        print(__doc__, file=sys.stderr)
        return 64
    TRACE.write_bytes(text.encode())
    return 0


if __name__ == "__main__":
    sys.exit(main())
