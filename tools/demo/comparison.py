"""What was sent against what was heard, value by value. Both have the form of the server's record."""

import json
import math
import struct

_NUMBERS = ("int", "long", "double")
# Their first maps come out of a HashMap of Java's, in no order.
UNORDERED = {"onExtendedDataCollected": ("metaData",), "onActionPerformed": ("metaData",)}
_ABSENT = object()


def count_values(value):
    """How many values there are: texts, numbers, truth values, nulls."""
    if _is_number(value):
        return 1
    if isinstance(value, dict):
        return sum(count_values(part) for part in value.values())
    if isinstance(value, list):
        return sum(count_values(part) for part in value)
    return 1


def find_differences(method, sent, heard):
    """A line for each value that differs, with the path to it; none where everything is equal."""
    for name in UNORDERED.get(method, ()):
        sent, heard = _sorted(sent, name), _sorted(heard, name)
    return list(_differences("", sent, heard))


def _sorted(arguments, name):
    if not isinstance(arguments.get(name), list):
        return arguments
    return {**arguments, name: sorted(arguments[name], key=json.dumps)}


def _differences(path, sent, heard):
    if _is_number(sent) or _is_number(heard):
        if not (_is_number(sent) and _is_number(heard)) or _exact(sent) != _exact(heard):
            yield _line(path, sent, heard)
    elif isinstance(sent, dict) and isinstance(heard, dict):
        for name in [*sent, *(name for name in heard if name not in sent)]:
            yield from _differences(f"{path}.{name}" if path else name, sent.get(name, _ABSENT),
                                    heard.get(name, _ABSENT))
    elif isinstance(sent, list) and isinstance(heard, list):
        for index in range(max(len(sent), len(heard))):
            ours = sent[index] if index < len(sent) else _ABSENT
            theirs = heard[index] if index < len(heard) else _ABSENT
            yield from _differences(path + _label(index, theirs if ours is _ABSENT else ours), ours, theirs)
    elif type(sent) is not type(heard) or sent != heard:
        yield _line(path, sent, heard)


def _is_number(value):
    return isinstance(value, dict) and len(value) == 1 and next(iter(value)) in _NUMBERS


def _exact(number):
    """A number's type and its very bits: 0.0 is not -0.0, and NaN is NaN."""
    kind, value = next(iter(number.items()))
    if kind == "double" and value is not None and not isinstance(value, bool):
        try:
            as_float = float(value)
            return kind, "NaN" if math.isnan(as_float) else struct.pack(">d", as_float)
        except (TypeError, ValueError, OverflowError):
            pass  # no number: compared as it stands
    return kind, type(value).__name__, repr(value)


def _label(index, element):
    """Metrics and properties are found by their names."""
    name = None
    if isinstance(element, dict):
        name = element.get("name")
    elif isinstance(element, list) and len(element) == 2:
        name = element[0]
    return f"[{json.dumps(name)}]" if isinstance(name, str) else f"[{index}]"


def _line(path, sent, heard):
    if heard is _ABSENT:
        return f"{path}: sent {_show(sent)}, did not arrive"
    if sent is _ABSENT:
        return f"{path}: nobody sent {_show(heard)}"
    return f"{path}: sent {_show(sent)}, arrived {_show(heard)}"


def _show(value):
    text = json.dumps(value)
    return text if len(text) <= 60 else text[:57] + "..."
