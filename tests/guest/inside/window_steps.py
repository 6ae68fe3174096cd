"""What a person does in the updater's window, on whatever computer it is shown."""

IDENTITY = "2103070021"


def write(updater, display, stage):
    """Writes the first card's firmware."""
    updater.wait_for("label", IDENTITY)
    stage("idle", "the first card, with its identity")
    display.click(*updater.middle_of(updater.wait_for("push button", "Update")))
    updater.wait_for("label", "About to program")
    stage("confirmation", "the update is to be confirmed")
    display.press("Return")
    updater.wait_for("progress bar", "")
    stage("writing", "the firmware is being written", moving=True)
    updater.wait_for("push button", "Shut")
    stage("finished", "it is written", changed=False)


def write_and_quit(updater, display, stage):
    write(updater, display, stage)
    display.press("ctrl+q")
    updater.wait_for_end()


def write_and_shut_down(updater, display, stage):
    write(updater, display, stage)
    display.click(*updater.middle_of(updater.find("push button", "Shut")))
    updater.wait_for_end()


def look(updater, display, stage):
    """Returns the firmware version that the first card shows."""
    updater.wait_for("label", IDENTITY)
    version = updater.labelled("Firmware on the card")
    stage("look", f"the first card runs {version}")
    display.press("ctrl+q")
    updater.wait_for_end()
    return version


def be_refused(updater, display, stage):
    """Returns what the program says about it."""
    updater.wait_for("label", "Another program may be using the card")
    stage("refused", "the cards may not be used")
    display.press("Return")
    updater.wait_for_end()
    return " ".join(updater.said().split())
