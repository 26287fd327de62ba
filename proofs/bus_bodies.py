"""Bodies of bus messages: wrong ones for a method or signal whose right signature is known, and random ones."""

import dbus
import dbus.types

BASIC = "ybnqiuxtdsog"
TEXTS = ["", "x", "clicked", "label", "org.kde.StatusNotifierItem", "org.freedesktop.appearance", "default", "\u4e13\u6ce8" * 40]
PATHS = ["/", "/StatusNotifierItem", "/a/b"]
SIGNATURES = ["", "s", "a{sv}", "(iiay)"]
RANGES = {"y": (0, 2**8), "n": (-2**15, 2**15), "q": (0, 2**16), "i": (-2**31, 2**31), "u": (0, 2**32),
          "x": (-2**63, 2**63), "t": (0, 2**64)}
TYPES = {"y": dbus.Byte, "n": dbus.Int16, "q": dbus.UInt16, "i": dbus.Int32, "u": dbus.UInt32, "x": dbus.Int64,
         "t": dbus.UInt64}
# Alone, and each in the place of one right argument.
WRONG = ["y", "b", "i", "u", "x", "d", "s", "o", "g", "v", "as", "ai", "ay", "av", "a{sv}", "a{is}", "(isvu)", "a(isvu)",
         "aa{sv}", "a{sa{sv}}", "(((i)))", "a(ii)"]


def split(signature):
    """The complete types one after the other."""
    types, at = [], 0
    while at < len(signature):
        end = end_of_type(signature, at)
        types.append(signature[at:end])
        at = end
    return types


def end_of_type(signature, at):
    if signature[at] == "a":
        return end_of_type(signature, at + 1)
    if signature[at] not in "({":
        return at + 1
    depth = 0
    for end in range(at, len(signature)):
        depth += (signature[end] in "({") - (signature[end] in ")}")
        if depth == 0:
            return end + 1
    raise ValueError(signature)


def wrong_signatures(right):
    """The table: too few, too many, and one argument after the other of another type."""
    types = split(right)
    found = ["", right, right + "s", right + "v", right[::-1] if right.isalpha() and "a" not in right else "v" + right]
    found += ["".join(types[:end]) for end in range(len(types))]
    found += WRONG
    for place in range(len(types)):
        found += ["".join([*types[:place], wrong, *types[place + 1:]]) for wrong in WRONG]
    return list(dict.fromkeys(found))


def random_signature(chance, depth=0):
    """One complete type."""
    kind = chance.random()
    if depth > 3 or kind < 0.6:
        return chance.choice(BASIC)
    if kind < 0.7:
        return "v"
    if kind < 0.8:
        return "a" + random_signature(chance, depth + 1)
    if kind < 0.9:
        return "(" + "".join(random_signature(chance, depth + 1) for _ in range(chance.randrange(1, 5))) + ")"
    return "a{" + chance.choice(BASIC) + random_signature(chance, depth + 1) + "}"


def value(chance, signature, depth=0):
    """A value of this complete type."""
    first = signature[0]
    if first in RANGES:
        low, high = RANGES[first]
        return TYPES[first](chance.choice([0, 1, 2, 3, 5, low, high - 1, chance.randrange(low, high)]) if low < 6 < high
                            else 0)
    if first == "b":
        return dbus.Boolean(chance.random() < 0.5)
    if first == "d":
        return dbus.Double(chance.choice([0.0, -1.5, 1e308, float("nan"), float("inf")]))
    if first in "sog":
        texts, kind = {"s": (TEXTS, dbus.String), "o": (PATHS, dbus.ObjectPath),
                       "g": (SIGNATURES, dbus.Signature)}[first]
        return kind(chance.choice(texts))
    if first == "v":
        inner = random_signature(chance, depth + 1)
        return value(chance, inner, depth + 1)
    if first == "(":
        return dbus.Struct([value(chance, part, depth + 1) for part in split(signature[1:-1])], signature=signature[1:-1])
    if signature.startswith("a{"):
        key, of = split(signature[2:-1])
        return dbus.Dictionary({value(chance, key, depth + 1): value(chance, of, depth + 1)
                                for _ in range(chance.randrange(3))}, signature=signature[2:-1])
    return dbus.Array([value(chance, signature[1:], depth + 1) for _ in range(chance.choice([0, 1, 2, 3, 40 >> depth]))],
                      signature=signature[1:])


def body(chance, signature):
    """A value for every argument."""
    return [value(chance, part) for part in split(signature)]


def fill(message, signature, arguments):
    if signature:
        message.append(*arguments, signature=signature)
    return message
