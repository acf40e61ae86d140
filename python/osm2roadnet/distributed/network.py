"""The network that `osm2roadnet.distributed.read` returns."""
