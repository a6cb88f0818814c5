"""Finds function bodies in C++ text by counting braces.

No compiler is needed: outside functions a brace opens a namespace, a class, an initialiser or a
function, and the text before it tells which. Lambdas and local classes count as part of the
function that holds them.
"""

import re
from dataclasses import dataclass

from house import sources

_SCOPE = re.compile(r'^(?:inline\s+)?namespace\b|^extern\s*"|\b(?:class|struct|union|enum)\b')
_TEMPLATE = re.compile(r"^template\s*<")
_ACCESS = re.compile(r"^(?:(?:public|protected|private)\s*:\s*)+")
_CONSTRUCTOR_LIST = re.compile(r"\)\s*(?:noexcept\s*(?:\([^)]*\)\s*)?)?:(?!:)")
_ATTRIBUTED_CLASS = re.compile(r"(?:class|struct|union)\s*(?:alignas|\[\[|[A-Z_]+\()")
_MEMBER_NAME = re.compile(r"(?<!\bconst)(?<!\bnoexcept)(?<!\boverride)(?<!\bfinal)(?<!\btry)(?<=[\w>])$")
_ASSIGNMENT = re.compile(r"(?<![<>=!+\-*/%&|^])=(?!=)")
_NAME = re.compile(r"((?:[A-Za-z_][\w:]*::)?(?:~?[A-Za-z_]\w*|operator\s*[^\s\w(]{1,3}|operator\s*\(\)))"
                   r"\s*\(")


@dataclass
class Function:
    name: str
    first_line: int
    last_line: int

    @property
    def lines(self):
        return self.last_line - self.first_line + 1


def _strip_template(header):
    """`header` without template<...> at its front."""
    while _TEMPLATE.match(header):
        depth = 0
        for index, char in enumerate(header):
            if char == "<":
                depth += 1
            elif char == ">":
                depth -= 1
                if depth == 0:
                    break
        header = header[index + 1:].lstrip()
    return header


def _kind(header):
    """What a brace after `header` opens: 'scope', 'function' or 'data'."""
    header = _strip_template(_ACCESS.sub("", header.strip()))
    parenthesis = header.find("(")
    if _SCOPE.search(header) and (parenthesis < 0 or _ATTRIBUTED_CLASS.match(header)):
        return "scope"
    if parenthesis < 0:
        return "data"
    if _CONSTRUCTOR_LIST.search(header) and _MEMBER_NAME.search(header):
        return "data"
    plain = re.sub(r"\([^()]*\)|operator\s*=", "", header)
    equals = _ASSIGNMENT.search(plain)
    if equals and "[" not in plain[equals.end():]:  # a lambda's captures make it a function
        return "data"
    return "function"


def _without_preprocessor(code):
    """Blanks directives, and the branches of #else / #elif, so that braces stay balanced."""
    out, skipping, depth_of_skip, depth, continued = [], False, 0, 0, False
    for line in code.split("\n"):
        directive = line.lstrip().startswith("#") and not continued
        if directive:
            word = re.match(r"\s*#\s*(\w*)", line).group(1)
            if word in ("if", "ifdef", "ifndef"):
                depth += 1
            elif word in ("else", "elif") and not skipping:
                skipping, depth_of_skip = True, depth
            elif word == "endif":
                if skipping and depth == depth_of_skip:
                    skipping = False
                depth -= 1
        keep = not directive and not continued and not skipping
        continued = (directive or continued) and line.rstrip().endswith("\\")
        out.append(line if keep else "")
    return "\n".join(out)


def find_functions(text):
    """All functions with a body, in order. Raises ValueError when the braces do not balance."""
    code = _without_preprocessor(sources.code_only(text))
    functions = []
    stack = []         # kinds of the open braces
    header_start = 0   # where the text before the next brace begins
    inside = 0         # depth of braces inside a function or an initialiser
    current = None
    line = 1
    for index, char in enumerate(code):
        if char == "\n":
            line += 1
        elif char == "{":
            if inside:
                inside += 1
                continue
            kind = _kind(code[header_start:index])
            stack.append(kind)
            if kind == "scope":
                header_start = index + 1
                continue
            inside = 1
            if kind == "function":
                current = _begin(code, header_start, index)
        elif char == "}":
            if inside > 1:
                inside -= 1
                continue
            if not stack:
                raise ValueError(f"line {line}: a brace closes that was never opened")
            kind = stack.pop()
            inside = 0
            if kind == "function":
                functions.append(Function(current[0], current[1], line))
            if kind != "data":
                header_start = index + 1
        elif char == ";" and not inside:
            header_start = index + 1
    if stack:
        raise ValueError("a brace is never closed")
    return functions


def _begin(code, start, brace):
    header = code[start:brace]
    stripped = _ACCESS.sub("", header.lstrip())
    first = start + len(header) - len(stripped) if stripped else start
    name = _NAME.search(_strip_template(stripped))
    if name and name.group(1) in ("TEST", "TEST_F", "TEST_P", "TYPED_TEST", "BENCHMARK_DEFINE_F"):
        label = re.sub(r"\s+", " ", stripped).strip()
    else:
        label = name.group(1) if name else "(unnamed)"
    return label, sources.line_of(code, first)
