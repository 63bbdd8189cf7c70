"""Asks a probe, a program that answers each document with a line."""

import subprocess


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
