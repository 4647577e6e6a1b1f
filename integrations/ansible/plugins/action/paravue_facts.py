from ansible_collections.paravue.recorder.plugins.module_utils import control
from ansible_collections.paravue.recorder.plugins.module_utils.task import ControlTask


class ActionModule(ControlTask):
    OWN_ARGUMENTS = {'patterns': {'type': 'list', 'elements': 'str', 'default': []}}

    def run_control(self, params):
        for pattern in params['patterns']:
            if pattern.startswith('-'):
                raise control.ControlError('"%s" cannot be a pattern' % pattern)
        ran = control.run(params, ['get', params['address']] + params['patterns'])
        result = {'changed': False}
        if ran.is_done:
            values = {value['path']: value['value'] for value in ran.document['values']}
            result['ansible_facts'] = {
                'paravue': {'recorder': ran.document['recorder'], 'values': values},
            }
        result.update(self.failure(ran))
        return result
