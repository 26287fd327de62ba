"""Finds the places of a source that can be mutated, and what each can become."""

import dataclasses
import json
import re
import shlex

import clang.cindex
from clang.cindex import CursorKind as Kind

RELATIONAL = {"<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"), "==": ("!=",), "!=": ("==",)}
ARITHMETIC = {"+": "-", "-": "+", "*": "/", "/": "*", "%": "*", "+=": "-=", "-=": "+=", "*=": "/=", "/=": "*=", "%=": "*="}
LOGICAL = {"&&": "||", "||": "&&"}
ASSIGNMENTS = ("=", *(operator for operator in ARITHMETIC if operator.endswith("=")))

FUNCTIONS = (Kind.FUNCTION_DECL, Kind.CXX_METHOD, Kind.CONSTRUCTOR, Kind.DESTRUCTOR, Kind.CONVERSION_FUNCTION,
             Kind.FUNCTION_TEMPLATE)
SCOPES = (Kind.NAMESPACE, Kind.CLASS_DECL, Kind.STRUCT_DECL, Kind.CLASS_TEMPLATE,
          Kind.CLASS_TEMPLATE_PARTIAL_SPECIALIZATION, Kind.UNION_DECL, Kind.LINKAGE_SPEC, Kind.UNEXPOSED_DECL)
BLOCKS = (Kind.COMPOUND_STMT, Kind.CASE_STMT, Kind.DEFAULT_STMT)
# Reserving memory only saves time.
ONLY_FASTER = re.compile(rb"\.reserve\([^;]*\Z")
PAINTING = re.compile(rb"\bpaintEvent\b|\bQPainter\s*[&*]")


@dataclasses.dataclass
class Mutant:
    """One change: the text of a place and what takes its place."""

    file: str  # below src/
    line: int
    function: str
    kind: str
    before: str
    after: str
    code: bytes  # what the copy has instead; empty where a statement is deleted
    is_constexpr: bool  # the compiler may have computed it, where no test reaches it
    number: int = 0

    def key(self):
        """What an entry of the list of equivalents names."""
        return self.file, self.function, self.before, self.after

    def __str__(self):
        return f"{self.file} | {self.function} | {self.before} | {self.after}"


@dataclasses.dataclass
class Place:
    """A part of the source, from its first byte to the one behind its last, and its mutants."""

    start: int
    end: int
    form: str  # "expression", "condition", "statement" or "declaration"
    mutants: list
    name: bytes = b""  # of the variable that a condition declares

    def order(self):
        """Outer places before inner ones, of equal extent the statement before the condition before its operator."""
        return self.start, -self.end, ("statement", "condition", "declaration", "expression").index(self.form)


@dataclasses.dataclass(frozen=True)
class Context:
    function: str = ""
    is_constexpr: bool = False
    is_constant: bool = False


def one_line(text):
    return " ".join(text.decode().split())


def compiler_arguments(commands_file):
    """The arguments that each source is compiled with, by its path."""
    arguments = {}
    for command in json.loads(commands_file.read_text()):
        words = shlex.split(command["command"])
        arguments[command["file"]] = words[1:words.index("-o")]
    return arguments


class Finder:
    """The places of one file."""

    def __init__(self, path, name, arguments):
        self.name = name
        self.source = path.read_bytes()
        self.places = {}
        self.constants = 0  # places that the compiler computes
        unit = clang.cindex.Index.create().parse(
            str(path), args=[*arguments, "-xc++", "-Wno-everything"],
            options=clang.cindex.TranslationUnit.PARSE_DETAILED_PROCESSING_RECORD)
        problems = [str(problem) for problem in unit.diagnostics if problem.severity >= clang.cindex.Diagnostic.Error]
        if problems:
            raise RuntimeError("\n".join(problems))
        tops = [cursor for cursor in unit.cursor.get_children()
                if cursor.location.file and cursor.location.file.name == str(path)]
        self.macros = [self.extent(cursor) for cursor in tops if cursor.kind == Kind.MACRO_INSTANTIATION]
        for cursor in tops:
            if not cursor.kind.is_preprocessing():
                self.visit(cursor, Context())

    def extent(self, cursor):
        return cursor.extent.start.offset, cursor.extent.end.offset

    def text(self, cursor):
        start, end = self.extent(cursor)
        return self.source[start:end]

    def visit_all(self, cursors, context):
        for cursor in cursors:
            self.visit(cursor, context)

    def visit(self, cursor, context):
        start, end = self.extent(cursor)
        if any(first <= start and end <= last for first, last in self.macros):
            return
        children = list(cursor.get_children())
        kind = cursor.kind
        if kind in FUNCTIONS:
            self.visit_function(cursor, children, context)
        elif kind in SCOPES:
            name = context.function if kind in (Kind.NAMESPACE, Kind.UNEXPOSED_DECL) else cursor.spelling
            self.visit_all(children, dataclasses.replace(context, function=name))
        elif kind in (Kind.VAR_DECL, Kind.FIELD_DECL):
            head = self.source[start:cursor.location.offset]
            constant = re.search(rb"\b(constexpr|constinit)\b", head)
            name = context.function or cursor.spelling
            self.visit_all(children, dataclasses.replace(context, function=name,
                                                         is_constant=context.is_constant or bool(constant)))
        elif kind == Kind.LAMBDA_EXPR:
            inner = dataclasses.replace(context, is_constant=False, is_constexpr=context.is_constexpr or context.is_constant)
            self.visit_all(children, inner)
        elif kind == Kind.CASE_STMT:
            self.find_statements(children[1:], context)
            self.visit_all(children[1:], context)
        elif kind.is_statement() or kind.is_expression() or kind in (Kind.PARM_DECL, Kind.UNEXPOSED_DECL):
            self.find(cursor, children, context)
            self.visit_all(children, context)

    def visit_function(self, cursor, children, context):
        bodies = [child for child in children if child.kind == Kind.COMPOUND_STMT]
        if not bodies:
            return
        head = self.source[cursor.extent.start.offset:bodies[0].extent.start.offset]
        if b"consteval" in head or PAINTING.search(head):
            return
        is_constexpr = re.search(rb"\bconstexpr\b", head) is not None
        inner = Context(re.sub(r"<.*", "", cursor.spelling) or cursor.spelling, is_constexpr)
        initialisers = [child for child in children
                        if cursor.kind == Kind.CONSTRUCTOR and child.kind.is_expression()]
        self.visit_all(initialisers + bodies, inner)

    def find(self, cursor, children, context):
        kind = cursor.kind
        if kind in BLOCKS:
            self.find_statements(children, context)
        elif kind in (Kind.IF_STMT, Kind.WHILE_STMT):
            self.find_condition(cursor, children, context)
        elif kind == Kind.CONDITIONAL_OPERATOR and children:
            self.negate(children[0], context)
        elif kind in (Kind.BINARY_OPERATOR, Kind.COMPOUND_ASSIGNMENT_OPERATOR, Kind.CALL_EXPR):
            self.find_operator(cursor, children, context)
        elif kind == Kind.UNARY_OPERATOR:
            self.find_unary(cursor, context)
        elif kind == Kind.CXX_BOOL_LITERAL_EXPR:
            other = {b"true": b"false", b"false": b"true"}[self.text(cursor)]
            self.add(cursor, "expression", [("literal", other)], context)

    def find_statements(self, children, context):
        for child in children:
            while child.kind == Kind.UNEXPOSED_EXPR and len(list(child.get_children())) == 1:
                child = next(child.get_children())
            is_change = (child.kind in (Kind.CALL_EXPR, Kind.COMPOUND_ASSIGNMENT_OPERATOR)
                         or child.kind == Kind.BINARY_OPERATOR and self.operator(list(child.get_children())) == "="
                         or child.kind == Kind.UNARY_OPERATOR and self.text(child)[:2] in (b"++", b"--"))
            if is_change and not ONLY_FASTER.search(self.text(child)):
                self.add(child, "statement", [("deleted statement", b"")], context)

    def find_condition(self, cursor, children, context):
        if re.match(rb"if\s+constexpr\b", self.text(cursor)) or not children:
            return
        has_initialiser = children[0].kind == Kind.DECL_STMT
        condition = children[1 if has_initialiser else 0]
        if condition.kind != Kind.VAR_DECL:
            self.negate(condition, context)
        elif not has_initialiser:
            name = condition.spelling.encode()
            self.add(condition, "declaration", [("negated condition", b"!" + name)], context, name)

    def negate(self, condition, context):
        inner = condition
        while inner.kind in (Kind.UNEXPOSED_EXPR, Kind.PAREN_EXPR) and len(list(inner.get_children())) == 1:
            inner = next(inner.get_children())
        text = self.text(inner)
        # What is a mutant of the operator already.
        if self.operator(list(inner.get_children())) in RELATIONAL or text.startswith(b"!") or text in (b"true", b"false"):
            return
        self.add(condition, "condition", [("negated condition", b"!(" + self.text(condition) + b")")], context)

    def operands(self, children):
        """The outer two of an operator's children: an overloaded one stands between them as a child of its own."""
        if len(children) < 2:
            return None
        ordered = sorted(children, key=lambda child: self.extent(child))
        return ordered[0], ordered[-1]

    def operator(self, children):
        sides = self.operands(children)
        if not sides:
            return ""
        between = self.source[sides[0].extent.end.offset:sides[1].extent.start.offset]
        return re.sub(rb"//[^\n]*|/\*.*?\*/|\s", b"", between, flags=re.DOTALL).decode(errors="replace")

    def find_operator(self, cursor, children, context):
        operator = self.operator(children)
        if not operator or operator in "+=" and "string" in cursor.type.spelling.lower():
            return  # a text has no other operator
        left, right = (self.text(side) for side in self.operands(children))
        if operator in RELATIONAL:
            changed = [("relational", b"(" + left + b") " + other.encode() + b" (" + right + b")")
                       for other in RELATIONAL[operator]]
        elif operator in LOGICAL:
            changed = [("logical", b"(" + left + b") " + LOGICAL[operator].encode() + b" (" + right + b")"),
                       ("dropped side", b"static_cast<bool>(" + left + b")"),
                       ("dropped side", b"static_cast<bool>(" + right + b")")]
        elif operator in ARITHMETIC:
            changed = [("arithmetic", b"(" + left + b") " + ARITHMETIC[operator].encode() + b" (" + right + b")")]
        else:
            return
        # The compiler writes a != b anew where there is only ==, and no longer knows where that begins.
        begin, end = (self.extent(side) for side in self.operands(children))
        self.add_extent((begin[0], end[1]), "expression", changed, context)

    def find_unary(self, cursor, context):
        text = self.text(cursor)
        if text.startswith(b"!") and not text.startswith(b"!="):
            self.add(cursor, "expression", [("negated condition", b"static_cast<bool>(" + text[1:] + b")")], context)
        for operator, other in ((b"++", b"--"), (b"--", b"++")):
            if text.startswith(operator):
                self.add(cursor, "expression", [("arithmetic", other + text[2:])], context)
            elif text.endswith(operator):
                self.add(cursor, "expression", [("arithmetic", text[:-2] + other)], context)

    def add(self, cursor, form, changed, context, name=b""):
        self.add_extent(self.extent(cursor), form, changed, context, name)

    def add_extent(self, extent, form, changed, context, name=b""):
        start, end = extent
        if context.is_constant:
            self.constants += 1
            return
        before = one_line(self.source[start:end])
        line = self.source.count(b"\n", 0, start) + 1
        mutants = [Mutant(self.name, line, context.function, kind, before, readable(kind, code), code, context.is_constexpr)
                   for kind, code in changed]
        if changed[0][0] == "literal":
            # By itself it would not tell which of them is meant.
            first = self.source.rfind(b"\n", 0, start) + 1
            last = self.source.find(b"\n", end)
            mutants[0].before = one_line(self.source[first:last])
            mutants[0].after = one_line(self.source[first:start] + changed[0][1] + self.source[end:last])
        self.places.setdefault((start, end, form), Place(start, end, form, mutants, name))


def readable(kind, code):
    """How a mutant's code is told: without the brackets and casts that only the copy needs."""
    if kind == "deleted statement":
        return "nothing"
    text = one_line(code)
    if kind == "dropped side" or text.startswith("static_cast<bool>("):
        return text.removeprefix("static_cast<bool>(")[:-1]
    if match := re.fullmatch(r"\((.*)\) (\S+) \((.*)\)", text):
        return " ".join(match.groups())
    return text


def find_places(path, name, arguments):
    """The places of a file in the order of the text, outer ones first, and how many more are constants."""
    finder = Finder(path, name, arguments)
    return sorted(finder.places.values(), key=Place.order), finder.constants
