"""usage: pyserial_talk.py PORT PROFILE: what the device says equals what its profile says."""
import re
import sys

import serial

SILENCE = 0.4
PATIENCE = 15
RESULT = re.compile(r"OK|ERROR|NO CARRIER|CONNECT.*|\+CME ERROR:.*")

with open(sys.argv[2], encoding="utf-8") as file:
    # The expectations come last and repeat some keys.
    profile = dict(reversed(re.findall(r'^(\w+) = "?([^"\n]*)', file.read(), re.M)))
port = serial.Serial(sys.argv[1], 19200, timeout=PATIENCE)


def answer():
    """The lines up to the final result; what there is of them when it does not come."""
    lines = []
    while not lines or not RESULT.fullmatch(lines[-1]):
        line = port.readline().decode()
        if not line:
            return lines + ["silence"]
        if line.strip():
            lines.append(line.strip())
    return lines


def ask(command, *expected):
    port.reset_input_buffer()
    port.write(command.encode() + b"\r")
    got = answer()
    assert got == list(expected), f"{command}: {got}, not {list(expected)}"


def quiet():
    """Waits for as long as a silence lasts."""
    port.timeout = SILENCE
    got = port.read(100)
    port.timeout = PATIENCE
    assert got == b"", f"not silent: {got}"


def echoes(data):
    port.write(data)
    got = port.read(len(data))
    assert got == data, f"{data} comes back as {got}"


def escape():
    quiet()
    port.write(b"+++")
    # The far end gets them too, and gives them back.
    got = answer()
    assert got == ["+++", "OK"], f"+++: {got}"


# Names, with the echo on and off, commands joined.
ask("AT", "AT", "OK")
ask("ATE0V1Q0X4&C1&D2", "ATE0V1Q0X4&C1&D2", "OK")
ask("AT+CGMI", profile["manufacturer"], "OK")
ask("at+cgmm;+cgmr", profile["model"], profile["revision"], "OK")
ask("AT+CGSN", profile["serial"], "OK")

# The SIM, from locked to attached.
ask("AT+CMEE=1;+CPIN?", "+CME ERROR: 11")
ask("ATD*99#", "+CME ERROR: 11")
ask('AT+CPIN="9999"', "+CME ERROR: 16")
ask(f'AT+CPIN="{profile["pin"]}"', "OK")
ask("AT+CPIN?;+CIMI", "+CPIN: READY", profile["imsi"], "OK")
ask("AT+CSQ;+CREG?", f"+CSQ: {profile['signal']},99", "+CREG: 0,1", "OK")
ask("AT+CGATT?;+CGATT=1;+CGATT?", "+CGATT: 0", "+CGATT: 1", "OK")

# A speed that the device does not have, one that it has, and back.
ask("AT+IPR=57600", "ERROR")
ask("AT+IPR=9600", "OK")
port.write(b"AT\r")
quiet()
port.baudrate = 9600
ask("AT", "OK")
ask("AT+IPR=19200", "OK")
port.baudrate = 19200
ask("AT+IPR?", "+IPR: 19200", "OK")

# A call: left by +++ only between silences, taken up again, hung up.
ask("ATS12=10", "OK")
ask('AT+CGDCONT=3,"IP","internet"', "OK")
ask("ATD*99***3#", "CONNECT 19200")
echoes(b"data+++data")
escape()
ask("AT", "OK")
ask("ATO", "CONNECT 19200")
echoes(bytes(range(256)))
escape()
ask("ATH", "OK")
ask("ATO", "NO CARRIER")
