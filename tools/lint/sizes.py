"""Files and functions small enough to read, and how much of the code is tests."""

import re

from common import PRODUCT_FOLDERS, TEST_FOLDERS, Finding, cpp_files, read, without_comments

LONGEST_FILE = 500
LONGEST_FUNCTION = 60
REASON = "over 60 lines because"
TEST_SHARE = (0.25, 0.34)
SCOPE = re.compile(r"\b(namespace|class|struct|union|enum|extern)\b[^()=]*$|^\s*extern\b\s*(\"\w*\")?\s*$")


def functions(text):
    """(first line, last line) of each function body outside of other functions.

    Braces are counted. A brace after "..." with a parameter list opens a body; one inside a list of
    member initialisers does not end the head it stands in.
    """
    code = without_comments(text, keep_strings=False)
    code = re.sub(r"^[ \t]*#.*$", "", code, flags=re.MULTILINE)
    line, head, head_line = 1, "", 1
    scopes = []  # per open brace outside of functions: the head to resume, or None
    depth, begin = 0, 0
    for position, letter in enumerate(code):
        if letter == "\n":
            line += 1
        if depth:
            depth += (letter == "{") - (letter == "}")
            if not depth:
                following = code[position + 1:].lstrip()[:1]
                if following in (",", "{"):  # that was a member's initialiser
                    continue
                yield begin, line
                head = ""
            continue
        if letter == "{":
            if "(" in head and not SCOPE.search(head):
                depth, begin = 1, head_line
            else:
                scopes.append(None)
                head = ""
        elif letter == "}":
            if scopes:
                scopes.pop()
            head = ""
        elif letter == ";":
            head = ""
        else:
            if not head.strip():
                head, head_line = "", line
            head += letter


def check_functions(name, text):
    lines = text.splitlines()
    for begin, end in functions(text):
        length = end - begin + 1
        around = "\n".join(lines[max(0, begin - 6):end])
        if length > LONGEST_FUNCTION and REASON not in around:
            yield Finding(name, begin, f"a function of {length} lines",
                          f"move steps into functions of their own; a table or a switch that"
                          f' reads better whole says "{REASON} ..."',
                          warning=name.split("/")[0] not in PRODUCT_FOLDERS)


def count_code(files, folders):
    return sum(1 for name in cpp_files(files, folders)
               for line in without_comments(read(name)).splitlines() if line.strip())


def check(files):
    for name in cpp_files(files, PRODUCT_FOLDERS + TEST_FOLDERS + ("benchmarks",)):
        text = read(name)
        length = text.count("\n")
        if length > LONGEST_FILE:
            yield Finding(name, LONGEST_FILE, f"{length} lines, more than {LONGEST_FILE}",
                          "two things live together here; give each its file")
        yield from check_functions(name, text)


def check_ratio(files):
    product, tests = count_code(files, PRODUCT_FOLDERS), count_code(files, TEST_FOLDERS)
    share = tests / max(1, product + tests)
    print(f"      tests {tests} lines, product {product} lines: {share:.1%} of the code are tests")
    if not TEST_SHARE[0] <= share <= TEST_SHARE[1]:
        yield Finding("tests/", 0, f"{share:.1%} of the code are tests, not a quarter to a third",
                      "group cases in tables if above, find what a user would meet if below",
                      warning=True)
