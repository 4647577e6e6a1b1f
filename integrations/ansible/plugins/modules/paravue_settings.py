"""The documentation; the action of this name does the work, on the controller."""

DOCUMENTATION = r'''
module: paravue_settings
short_description: Set values of a networked video recorder
description:
  - Sets values, sends the files that they are in, and compares what the recorder has then.
  - Values that the recorder has already are left alone, so that a second run changes nothing.
  - Check mode compares and sends nothing. Diff mode shows the values, but not those of secrets.
extends_documentation_fragment: paravue.recorder.recorder
options:
  values:
    description:
      - The values by C(FILE/SECTION/KEY). What may be set C(paravue-ctl describe) lists.
      - C(on), C(off), C(yes) and C(no) need quotes, as YAML reads them as booleans.
    type: dict
    required: true
  force:
    description: Also set keys that the recorder does not have, and values that its description does not allow.
    type: bool
    default: false
'''

EXAMPLES = r'''
- name: Name servers and the name of the recorder
  paravue.recorder.paravue_settings:
    password: "{{ recorder_password }}"
    values:
      net/untitled/DNS1: 10.0.0.2
      streams/common/name: "{{ inventory_hostname }}"
'''

RETURN = r'''
changes:
  description: The values that were or would be changed; those of secrets are null.
  type: list
  returned: always
  sample: [{path: net/untitled/DNS1, old: 192.168.10.1, new: 10.0.0.2, secret: false}]
files:
  description: The files that the changes are in.
  type: list
  returned: always
arrived:
  description: Those that the recorder has accepted.
  type: list
  returned: always
confirmed:
  description: Whether the recorder has all values.
  type: bool
  returned: always
exit_code:
  description: That of C(paravue-ctl).
  type: int
  returned: failure
'''
