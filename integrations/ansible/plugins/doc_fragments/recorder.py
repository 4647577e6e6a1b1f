class ModuleDocFragment:
    """The options that all modules of the collection have."""

    DOCUMENTATION = r'''
options:
  address:
    description:
      - C(host[:port]) of the recorder, without a login.
      - Without it C(ansible_host) of the host, or else its name in the inventory.
    type: str
  login:
    description: The login. Without it the one that this computer remembers, or C(admin).
    type: str
  password:
    description:
      - The password as it is typed. It reaches C(paravue-ctl) in its environment, which other users cannot see.
      - Without I(password) and I(password_file) the remembered one is used.
    type: str
  password_file:
    description: A file on the controller that holds the password, and that only its owner may read.
    type: path
  timeout:
    description: How many seconds the recorder may keep the controller waiting.
    type: int
    default: 15
  retries:
    description: How often to fetch again when there is no connection or no answer.
    type: int
    default: 0
  program:
    description: C(paravue-ctl) on the controller.
    type: path
    default: paravue-ctl
notes:
  - Runs on the controller and needs no connection to the host - recorders have neither a shell nor Python.
requirements:
  - paravue-ctl on the controller
author:
  - The Paravue Setup developers
'''
