"""What `run` consists of."""
