"""Asks a probe, a program that answers each document with a line."""

import subprocess
import sys


class Complaint(Exception):
    """Where two readers differ."""


def answers(program, documents):
    """The probe's lines, one per document."""
    questions = "".join(document.hex() + "\n" for document in documents)
    run = subprocess.run([program], input=questions.encode(), capture_output=True, check=True)
    lines = run.stdout.split(b"\n")[:-1]
    if len(lines) != len(documents):
        raise Complaint(f"{len(documents)} documents, {len(lines)} answers")
    return [line.decode() for line in lines]


def check_all(documents, lines, complaint_about):
    """Raises the first complaint about an answer, with the document it is about."""
    for document, line in zip(documents, lines, strict=True):
        complaint = complaint_about(document, line)
        if complaint:
            raise Complaint(f"{document!r}\n  {complaint}")


def check_named(program, cases, without_details=str):
    """Raises the first of the named (document, wanted answer) pairs that the probe answers otherwise."""
    for (name, (_, wanted)), line in zip(cases.items(), answers(program, [document for document, _ in cases.values()])):
        if without_details(line) != wanted:
            raise Complaint(f"{name}: here {line}")


def status_of(check):
    """Runs `check` on the probe that the command line names; tells what it complains of."""
    try:
        check(sys.argv[1])
    except Complaint as complaint:
        print(complaint, file=sys.stderr)
        return 1
    return 0
