"""Networks that no one machine can hold."""
