"""The documentation; the action of this name does the work, on the controller."""

DOCUMENTATION = r'''
module: paravue_facts
short_description: Read values of a networked video recorder
description:
  - Reads values into the fact C(paravue). Secrets are null.
extends_documentation_fragment: paravue.recorder.recorder
options:
  patterns:
    description:
      - Which values, all without this option. In a pattern C(*) stands for any letters and C(?) for one.
      - One that fits no value fails the task.
    type: list
    elements: str
    default: []
'''

EXAMPLES = r'''
- name: What the recorder is called
  paravue.recorder.paravue_facts:
    password: "{{ recorder_password }}"
    patterns: [streams/common/name, 'net/*']

- ansible.builtin.debug:
    msg: "{{ paravue['values']['streams/common/name'] }}"
'''

RETURN = r'''
ansible_facts:
  description: The fact C(paravue).
  type: dict
  returned: success
  sample: {paravue: {recorder: 192.168.10.20, values: {net/untitled/DNS1: 10.0.0.2}}}
'''
