"""Road networks that are too large for one machine, on a cluster of Dask's.

Needs ``osm2roadnet[distributed]``. docs/scale.md says what it takes, and when one machine is enough.
"""

from __future__ import annotations

import os
from collections.abc import Iterable
from typing import TYPE_CHECKING

from osm2roadnet.errors import require

if TYPE_CHECKING:
    from distributed import Client

    from osm2roadnet.distributed.network import Network

__all__ = ["read"]

_PARTITION_SIZE = 16 << 20


def read(
    path: str | os.PathLike[str],
    *,
    join: str = "compatible",
    oneway: str = "implied",
    tags: Iterable[str] | None = None,
    client: Client | None = None,
    partition_size: int = _PARTITION_SIZE,
) -> Network:
    """Reads a sorted PBF file on a cluster and builds the network that `osm2roadnet.read` builds.

    It returns when the network is there, in the memory of the workers, or on their disks where Dask
    puts what they have no room for. What a worker that dies had is made again by the others.

    Args:
        path: the file, which all workers must find under this name: on a disk that they share, or
            as a copy on each. Sorted by type and id, as ``osmium sort`` does it and as files of
            whole countries always are.
        join, oneway, tags: as `osm2roadnet.read` has them.
        client: of the cluster; by default the current one, or else a new one of processes on this
            machine, which ends with the network.
        partition_size: how many bytes of the file a worker takes at a time. It needs some sixty
            times as many of memory, or more where nearly all of the file is roads.

    Raises:
        ReadError: if the file can't be read, or is not what it should be.
        ValueError: if an argument is not one of the above.
    """
    keys = tags.split(",") if isinstance(tags, str) else tags
    options = (join, oneway, None if keys is None else list(keys))
    if partition_size < 1:
        raise ValueError(f"partition_size is at least 1, not {partition_size}")
    network = require("osm2roadnet.distributed.network", "distributed")
    made: Network = network.Network(os.fspath(path), options, client, partition_size)
    return made
