"""Holds what the program prints with --json to docs/json, and remembers which members came."""
import json
from pathlib import Path

try:
    import jsonschema
except ImportError:
    jsonschema = None

SCHEMAS = Path(__file__).resolve().parents[2] / "docs/json"
VERBS = {"disc": {"list", "status", "insert", "eject", "erase"}, "config": {"get", "set", "unset"}}
# The properties of a schema by their identity, and a member of it that came, as null or as something.
came = set()


def load():
    return {path.name: json.loads(path.read_text()) for path in sorted(SCHEMAS.glob("*.schema.json"))}


def remember(validator, properties, instance, schema):
    if isinstance(instance, dict):
        came.update((id(properties), name, instance[name] is None)
                    for name in properties if name in instance)
    yield from jsonschema.Draft202012Validator.VALIDATORS["properties"](
        validator, properties, instance, schema)


if jsonschema is not None:
    schemas = load()
    Validator = jsonschema.validators.extend(jsonschema.Draft202012Validator, {"properties": remember})


def faults(name, instance):
    """What is wrong with an object, in sentences; `name` is that of its schema. Nothing where there is
    no python3-jsonschema."""
    if jsonschema is None:
        return []
    schema = schemas[name + ".schema.json"]
    resolver = jsonschema.RefResolver(schema["$id"], schema, store=schemas)
    return [f"{name}: {error.json_path}: {error.message}"
            for error in Validator(schema, resolver=resolver).iter_errors(instance)]


def schema_of(arguments, status):
    """The schema of what a command line prints; none when that is no JSON."""
    options = arguments[:arguments.index("--")] if "--" in arguments else arguments
    if "--json" not in options or "--version" in options:
        return None
    # What goes to standard output leaves it no room for the object.
    if any(one in ("--iso", "--zip") and other == "-" for one, other in zip(options, options[1:])):
        return None
    if status == 2:
        return "usage"
    words = [argument for argument in options if not argument.startswith("-")]
    if "--help" in options or words[:1] == ["help"]:
        return "help"
    command = words[0]
    verb = next((word for word in words if word in VERBS.get(command, ())), None)
    if command == "config":
        return "config-value" if verb else "config"
    return {"unregister": "register"}.get(command, command if verb is None else f"{command}-{verb}")


def check(arguments, status, printed):
    """Fails for a command line with --json that did not print one line with an object as described."""
    if jsonschema is None or status < 0:
        return
    name = schema_of([str(argument) for argument in arguments], status)
    if name is None:
        return
    text = printed.decode() if isinstance(printed, bytes) else printed
    assert text.endswith("\n") and text.count("\n") == 1, (arguments, text)
    found = faults(name, json.loads(text))
    assert not found, (arguments, found)
