"""kobd for Python: the objects and tables of the router, by name.

    from kobd import Router

    with Router() as router:
        print(router["IMEI"])
        router["webHttpPort"] = 8080
        for change in router.watch("web*"):
            print(change.name, change.old, change.new)

The package stands on the client library, which the system's loader finds, or the environment
variable KOBD_CLIENT_LIBRARY names. It needs nothing else.
"""

from .dictionary import Description, TableDescription, Value, describe, objects, tables
from .errors import KobdError, NotFound, NotRunning, Refused, Timeout
from .router import Router
from .simulator import Simulator
from .table import Changes, Row, Table
from .watching import Change, Watch

__all__ = [
    "Change",
    "Changes",
    "Description",
    "KobdError",
    "NotFound",
    "NotRunning",
    "Refused",
    "Router",
    "Row",
    "Simulator",
    "Table",
    "TableDescription",
    "Timeout",
    "Value",
    "Watch",
    "describe",
    "objects",
    "tables",
]
