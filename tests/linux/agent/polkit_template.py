"""python-dbusmock's polkit, which can also answer as polkit does when there is a dialog, or nobody to show one to."""

import dbus
from dbusmock import MOCK_IFACE
from dbusmock.templates import polkitd

BUS_NAME, MAIN_OBJ, MAIN_IFACE, SYSTEM_BUS = polkitd.BUS_NAME, polkitd.MAIN_OBJ, polkitd.MAIN_IFACE, True

# Authorized, a challenge, details.
ANSWERS = {"granted": (True, False, {}),
           "dismissed": (False, False, {"polkit.dismissed": "true"}),
           "refused": (False, False, {}),
           "nobody": (False, True, {})}


def load(mock, parameters):
    polkitd.load(mock, parameters)
    mock.answer = "refused"
    mock.open_questions = []  # a cancellation's name and what to call with the answer, each


@dbus.service.method(MAIN_IFACE, in_signature="(sa{sv})sa{ss}us", out_signature="(bba{ss})",
                     async_callbacks=("answer", "_fail"))
def CheckAuthorization(self, subject, action, _details, flags, cancellation, answer, _fail):
    self.log(f"asked {subject[0]} {subject[1]['name']} {action} {flags}")
    if self.answer == "dialog" and flags == 1:
        self.open_questions.append((cancellation, answer))
    else:
        # Only a dialog can be dismissed.
        answer(dbus.Struct(ANSWERS["nobody" if flags == 0 and self.answer != "granted" else self.answer],
                           signature="bba{ss}"))


@dbus.service.method(MAIN_IFACE, in_signature="s")
def CancelCheckAuthorization(self, cancellation):
    self.open_questions = [question for question in self.open_questions if question[0] != cancellation]


@dbus.service.method(MOCK_IFACE, in_signature="s")
def SetAnswer(self, answer):
    """One of ANSWERS, or "dialog" for a question that stays open."""
    self.answer = answer


@dbus.service.method(MOCK_IFACE, in_signature="s")
def AnswerDialog(self, name):
    while self.open_questions:
        self.open_questions.pop()[1](dbus.Struct(ANSWERS[name], signature="bba{ss}"))


@dbus.service.method(MOCK_IFACE, out_signature="u")
def CountOpenQuestions(self):
    return len(self.open_questions)
